#pragma once

#include <chrono>
#include <set>
#include <unordered_map>

#include "Application.h"
#include "osg/Vec4f.h"

struct SDL_Window;
struct SDL_Cursor;
union SDL_Event;
class rastBackend;
class rastGlBackend;

namespace gui {

// An application in an SDL2 window with an OpenGL 3.3 core context: a real
// clock, key state, cursor, clipboard, and SDL events turned into gui::GUI
// input calls. createMainWindow makes the window, the context and the
// process-wide renderer over the OpenGL backend; when any of that fails it is
// logged, the renderer goes over the null backend, and the program runs on
// without drawing.
class VUREL_EXPORT SdlApplication : public Application {
public:
    // Effect programs are read from `assetDir` (e.g. examples/assets).
    explicit SdlApplication(orm::basic_string<char> assetDir);
    // Destroys the renderer it made, the context and the window. Call after GUI::destroy.
    ~SdlApplication() override;

    // Starts SDL's video; false, logged, without it.
    bool init() override;
    bool hasGl() const { return getGlBackend() != nullptr; }
    rastGlBackend* getGlBackend() const;

    // The colour each frame starts with.
    void setClearColor(osg::Vec4f const& color) { clearColor_ = color; }
    // One pass of the loop: events, the toolkit's frame, the swap.
    void runFrame();
    int run() override;
    void processEvents() override;
    // Turns one SDL event into toolkit input (or a window change).
    void handleEvent(SDL_Event const& event);
    void swapBuffers() override;

    // The next frame is written to `file` when drawn, before it is shown:
    // the picture of a window is only whole then. False without pixels.
    bool makeScreenshot(char const* file) override;
    orm::basic_string<char> getScreenshotExtention() const override { return "png"; }

    void setFullScreen(bool fullScreen) override;
    void setWindowTitle(orm::basic_string<char> const& title) override;
    double getTime() const override;
    void setClipboardText(orm::basic_string<wchar_t> const& text) override;
    orm::basic_string<wchar_t> getClipboardText() const override;
    bool isKeyPressed(KeyboardButton button) const override { return pressed_.count(button) != 0; }
    // Ids 0 (arrow), 36 and 41 (left-right), 39 (up-down), 38 and 40 (diagonals); others show the arrow.
    void setMouseCursor(int cursorId) override;
    int getMouseCursor() const { return cursorId_; }
    void showMouseCursor(bool show) override;
    void setMousePosition(osg::Vec2i const& position) override;
    void setMouseCapture(bool capture) override;
    osg::Vec2i getDesktopSize() const override;
    osg::Vec2i getMouseCursorSize() const override { return {16, 16}; }
    osg::Vec2i getMousePosition() const override { return mouse_; }
    void setWindowPosition(osg::Vec2i const& position) override;
    osg::Vec2i getWindowPosition() const override;
    void setWindowSize(osg::Vec2i const& size) override;

protected:
    bool createMainWindow_(int width, int height, bool fullScreen) override;

private:
    bool createWindow_(int width, int height, bool fullScreen);
    void createRenderer_();
    void destroyWindow_();
    void onWindowEvent_(SDL_Event const& event);
    void onKey_(SDL_Event const& event, bool down);
    void onText_(char const* utf8);
    void onResized_();
    void drawFrame_();

    orm::basic_string<char> assetDir_;
    bool videoReady_ = false;
    SDL_Window* window_ = nullptr;
    void* glContext_ = nullptr;
    rastGlBackend* backend_ = nullptr;  // owned by the renderer
    rastBackend* ownBackend_ = nullptr;  // the backend of the renderer made here, GL or null
    osg::Vec4f clearColor_{0, 0, 0, 1};
    orm::basic_string<char> pendingScreenshot_;

    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::set<int> pressed_;
    KeyboardButton lastKey_ = KeyNone;  // the key whose text arrives next
    osg::Vec2i mouse_;
    int cursorId_ = 0;
    std::unordered_map<int, SDL_Cursor*> cursors_;
    orm::basic_string<wchar_t> clipboard_;  // used when SDL's clipboard is not there
};

}  // namespace gui
