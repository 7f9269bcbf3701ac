// Creates the toolkit over the null renderer, queues a scripted input
// sequence, runs frames, and prints what the listeners and the keyboard
// callback received, frame by frame.

#include <cstdio>
#include <memory>

#include "GUI.h"
#include "KeyboardButtons.h"
#include "UpdateManager.h"
#include "app/HeadlessApplication.h"
#include "rast/Renderer.h"
#include "rast/backends/null/NullBackend.h"

namespace {

struct PrintingListener : gui::GUI::MouseListener, gui::GUI::RawKeyListener {
    void onMouseMove(int x, int y) override { std::printf("  mouse move     %4d %4d\n", x, y); }
    void onMouseDown(int x, int y, gui::MouseButton b) override {
        std::printf("  mouse down     %4d %4d  button %d\n", x, y, b);
    }
    void onMouseDoubleClick(int x, int y, gui::MouseButton b) override {
        std::printf("  double click   %4d %4d  button %d\n", x, y, b);
    }
    void onMouseUp(int x, int y, gui::MouseButton b) override {
        std::printf("  mouse up       %4d %4d  button %d\n", x, y, b);
    }
    void onMouseWheel(int x, int y, int delta) override { std::printf("  wheel          %4d %4d  %+d\n", x, y, delta); }
    void onRawKeyInput(gui::RawKeyInfo const& info) override { std::printf("  raw key        code %d\n", info.key); }
};

void runFrame(gui::HeadlessApplication& app, int frame, double seconds) {
    app.advanceTime(seconds);
    std::printf("frame %d at %.2f s\n", frame, app.getTime());
    app.runFrame();
}

}  // namespace

int main() {
    gui::HeadlessApplication app({800, 600});
    rastRenderer::create(std::make_unique<rastNullBackend>());
    try {
        gui::GUI::create(VUREL_INPUT_DEMO_DIR "/skin.lua", {800, 600}, 1.0f);
    } catch (gui::GUI::Exception const& e) {
        std::fprintf(stderr, "%s", e.what());
        return 1;
    }
    gui::GUI& gui = *gui::GUI::get();

    PrintingListener listener;
    gui.addMouseListener(&listener);
    gui.addRawKeyListener(&listener);
    // Escape is taken by the application; other keys go on to the windows.
    auto keyboard = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [](gui::KeyboardButton button, int value, bool down) {
            std::printf("  key %-5s      %s (%d) value %d%s\n", down ? "down" : "up",
                        gui::getKeyboardButtonName(button), button, value,
                        button == gui::KeyEscape ? "  -> taken by the application" : "");
            return button == gui::KeyEscape;
        });
    gui.addKeyboardCallback(keyboard);

    // Frame 1: moves and a press.
    gui.mouseMove(100, 100);
    gui.mouseMove(120, 110);
    gui.mouseDown(gui::MouseButtonLeft);
    gui.mouseUp(gui::MouseButtonLeft);
    runFrame(app, 1, 0.0);

    // Frame 2, 0.1 s later: a move to the delivered position is not queued, and the press is a double click.
    gui.mouseMove(120, 110);
    gui.mouseDown(gui::MouseButtonLeft);
    gui.mouseUp(gui::MouseButtonLeft);
    gui.mouseWheel(-1);
    runFrame(app, 2, 0.1);

    // Frame 3, 0.5 s later: too late for a double click.
    gui.mouseDown(gui::MouseButtonLeft);
    gui.mouseUp(gui::MouseButtonLeft);
    runFrame(app, 3, 0.5);

    // Frame 4: keys by name, a raw key, and a user message that posts input for the next frame.
    gui.keyDown(gui::getKeyboardButtonByName("a"), 0);
    gui.keyUp(gui::getKeyboardButtonByName("a"), 0);
    gui.keyDown(gui::getKeyboardButtonByName("page down"), 1);
    gui.keyDown(gui::KeyEscape, 0);
    gui::RawKeyInfo raw;
    raw.key = 300;
    gui.rawKeyInput(raw);
    gui.addUserMessage(std::make_shared<std::function<void()>>([&gui] {
        std::printf("  user message   posts a right click for the next frame\n");
        gui.mouseDown(gui::MouseButtonRight);
    }));
    runFrame(app, 4, 0.5);
    runFrame(app, 5, 0.016);

    gui.removeKeyboardCallback(keyboard);
    gui.removeMouseListener(&listener);
    gui.removeRawKeyListener(&listener);
    gui::GUI::destroy();
    rastRenderer::destroy();
    return 0;
}
