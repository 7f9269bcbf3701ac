#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "GuiFixture.h"
#include "Panel.h"
#include "Skin/GraphicCommands.h"
#include "UpdateManager.h"

using vurel_test::GuiFixture;

namespace {

// Records what the listeners receive, one readable line per call.
struct Recorder : gui::GUI::MouseListener, gui::GUI::RawKeyListener, gui::GUI::RawMouseListener {
    std::vector<std::string> calls;
    void add(char const* what, int x, int y, int v) {
        calls.push_back(std::string(what) + " " + std::to_string(x) + " " + std::to_string(y) + " " +
                        std::to_string(v));
    }
    void onMouseMove(int x, int y) override { add("move", x, y, 0); }
    void onMouseDown(int x, int y, gui::MouseButton b) override { add("down", x, y, b); }
    void onMouseDoubleClick(int x, int y, gui::MouseButton b) override { add("double", x, y, b); }
    void onMouseUp(int x, int y, gui::MouseButton b) override { add("up", x, y, b); }
    void onMouseWheel(int x, int y, int d) override { add("wheel", x, y, d); }
    void onRawKeyInput(gui::RawKeyInfo const& info) override { add("rawkey", info.key, info.scanCode, 0); }
    void onRawMouseInput(gui::RawMouseInfo const& info) override { add("rawmouse", info.x, info.y, info.buttons); }
};

class InputQueue : public GuiFixture {
protected:
    void SetUp() override {
        GuiFixture::SetUp();
        gui().addMouseListener(&recorder);
        gui().addMouseListener(&recorder);  // not twice
        gui().addRawKeyListener(&recorder);
        gui().addRawMouseListener(&recorder);
    }
    void TearDown() override {
        gui().removeMouseListener(&recorder);
        GuiFixture::TearDown();
    }
    void pressAt(double time, gui::MouseButton button) {
        app->setTime(time);
        gui().mouseDown(button);
        gui().processMessages();
    }
    Recorder recorder;
};

}  // namespace

TEST_F(InputQueue, DoubleClickIsStrictPerButtonAndRepeats) {
    pressAt(1.0, gui::MouseButtonLeft);
    pressAt(1.3, gui::MouseButtonLeft);  // exactly the double-click time: not a double click
    pressAt(1.5, gui::MouseButtonRight);  // other button within the time
    pressAt(1.6, gui::MouseButtonRight);  // same button again: double
    gui().mouseMove(200, 100);            // moving does not stop a double click
    gui().processMessages();
    pressAt(1.7, gui::MouseButtonRight);  // a third quick press is double again
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"down 0 0 1", "down 0 0 1", "down 0 0 2", "double 0 0 2",
                                                          "move 200 100 0", "double 200 100 2"}));

    gui().setDoubleClickTime(0.05);
    recorder.calls.clear();
    pressAt(1.8, gui::MouseButtonRight);
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"down 200 100 2"}));
}

TEST_F(InputQueue, InputIsDeliveredInOrderAtProcessMessagesOnly) {
    gui().mouseMove(10, 20);
    gui().mouseWheel(-3);
    gui().mouseUp(gui::MouseButtonLeft);
    gui::RawKeyInfo key;
    key.key = 97;
    key.scanCode = 30;
    gui().rawKeyInput(key);
    gui::RawMouseInfo raw;
    raw.x = 50;
    raw.y = 60;
    raw.buttons = 5;
    gui().setMouseOffset({4, 0});
    gui().rawMouseInput(raw);  // converted at the call, with the offset of that moment
    EXPECT_TRUE(recorder.calls.empty());
    EXPECT_EQ(gui().getQueuedMessageCount(), 5u);

    gui().processMessages();
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"move 10 20 0", "wheel 10 20 -3", "up 10 20 1",
                                                          "rawkey 97 30 0", "rawmouse 54 60 5"}));
    EXPECT_EQ(gui().getQueuedMessageCount(), 0u);
}

TEST_F(InputQueue, RepeatedMovesAndMovesBackToTheLastDeliveredPosition) {
    gui().mouseMove(10, 10);
    gui().processMessages();
    // Back to the delivered position: not queued. Elsewhere and back within a frame: both queued.
    gui().mouseMove(10, 10);
    EXPECT_EQ(gui().getQueuedMessageCount(), 0u);
    gui().mouseMove(11, 10);
    gui().mouseMove(12, 10);
    gui().mouseMove(10, 10);
    EXPECT_EQ(gui().getQueuedMessageCount(), 2u);
}

TEST_F(InputQueue, MessagesPostedDuringDeliveryWaitForTheNextFrame) {
    int runs = 0;
    auto second = std::make_shared<std::function<void()>>([&] { ++runs; });
    auto first = std::make_shared<std::function<void()>>([&] {
        ++runs;
        gui().addUserMessage(second);
        gui().mouseDown(gui::MouseButtonLeft);
    });
    gui().addUserMessage(first);
    gui().processMessages();
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(recorder.calls.empty());
    gui().processMessages();
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(recorder.calls.size(), 1u);
}

TEST_F(InputQueue, AnEmptyUserFunctionThrowsAndLosesNothingElse) {
    gui().mouseWheel(1);
    gui().addUserMessage(std::make_shared<std::function<void()>>());
    gui().mouseWheel(2);
    EXPECT_THROW(gui().processMessages(), std::bad_function_call);
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"wheel 0 0 1"}));
    // The message after the failing one is delivered at the next call.
    gui().processMessages();
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"wheel 0 0 1", "wheel 0 0 2"}));
    gui().addUserMessage(nullptr);
    EXPECT_THROW(gui().processMessages(), std::bad_function_call);
}

TEST_F(InputQueue, KeyboardCallbacksSeeKeysNotCharactersAndMayRemoveEachOther) {
    using Callback = gui::GUI::KeyboardCallback;
    std::vector<std::string> seen;
    Callback second;
    Callback first = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [&](gui::KeyboardButton b, int v, bool down) {
            seen.push_back("first " + std::to_string(b) + " " + std::to_string(v) + (down ? " down" : " up"));
            gui().removeKeyboardCallback(second);  // removed while running: skipped in this delivery
            return b == gui::KeyReturn;
        });
    second = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [&](gui::KeyboardButton, int, bool) {
            seen.push_back("second");
            return false;
        });
    gui().addKeyboardCallback(first);
    gui().addKeyboardCallback(second);
    gui().addKeyboardCallback(first);  // not twice

    gui().keyDown(gui::KeyReturn, 7);
    gui().onChar(gui::KeyReturn, 13);
    gui().keyUp(gui::KeySpace, 0);
    gui().processMessages();
    EXPECT_EQ(seen, (std::vector<std::string>{"first 13 7 down", "first 32 0 up"}));

    // Removing what is not registered does nothing.
    gui().removeKeyboardCallback(second);
    gui().removeKeyboardCallback(first);
    seen.clear();
    gui().keyDown(gui::KeyReturn, 0);
    gui().processMessages();
    EXPECT_TRUE(seen.empty());
}

TEST_F(InputQueue, PrintScreenIsAnsweredBeforeQueuedInput) {
    static std::vector<std::string>* order = nullptr;
    std::vector<std::string> log;
    order = &log;
    gui().setMakeScreenShotCallback([](char const* file) { order->push_back(file ? "file" : "null"); });
    auto user = std::make_shared<std::function<void()>>([&] { log.push_back("queued"); });
    gui().addUserMessage(user);
    gui().keyUp(gui::KeyPrintScreen, 0);
    gui().keyUp(gui::KeyEscape, 0);
    EXPECT_EQ(log, (std::vector<std::string>{"null"}));
    gui().processMessages();
    EXPECT_EQ(log, (std::vector<std::string>{"null", "queued"}));
    gui().setMakeScreenShotCallback(nullptr);
    gui().keyUp(gui::KeyPrintScreen, 0);
    gui().processMessages();
    EXPECT_EQ(log.size(), 2u);
}

TEST_F(InputQueue, KillingANullWindowIsHarmless) {
    gui().killWindow(nullptr);
    gui().killWindow(nullptr);
    EXPECT_NO_THROW(gui().processMessages());
}

class InputQueueNullRenderer : public InputQueue {
protected:
    void SetUp() override {
        recordingBackend = false;
        InputQueue::SetUp();
    }
};

TEST_F(InputQueueNullRenderer, ASteadyFrameAllocatesNothing) {
    // The recorder itself allocates its lines; a listener that only counts does not.
    gui().removeMouseListener(&recorder);
    gui().removeRawKeyListener(&recorder);
    gui().removeRawMouseListener(&recorder);
    struct Counting : gui::GUI::MouseListener {
        int calls = 0;
        void onMouseMove(int, int) override { ++calls; }
    } counting;
    gui().addMouseListener(&counting);
    auto callback = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [](gui::KeyboardButton, int, bool) { return false; });
    gui().addKeyboardCallback(callback);
    auto user = std::make_shared<std::function<void()>>([] {});
    // A small tree that changes every frame and is recorded and replayed as well as drawn.
    auto* panel = new gui::Panel();
    auto* child = new gui::Panel();
    panel->setSize({100, 100});
    child->setSize({10, 10});
    panel->insertWidget(child);
    gui::GraphicCommands commands;
    int x = 0;
    auto oneFrame = [&] {
        child->setPosition({x % 7, 0});
        gui().mouseMove(++x, 5);
        gui().mouseMove(++x, 6);
        gui().mouseDown(gui::MouseButtonLeft);
        gui().mouseUp(gui::MouseButtonLeft);
        gui().mouseWheel(1);
        gui().keyDown(gui::KeyLeft, 0);
        gui().onChar(gui::KeyNone, 'a');
        gui().keyUp(gui::KeyLeft, 0);
        gui().rawKeyInput(gui::RawKeyInfo{});
        gui().rawMouseInput(gui::RawMouseInfo{});
        gui().killWindow(nullptr);
        gui().addUserMessage(user);
        frame();
        panel->draw();
        panel->make(&commands);
        for (gui::GraphicCommand* c : commands.getCommands())
            c->doRedraw();
        for (gui::GraphicCommand* c : commands.getCommands())
            c->draw();
        for (size_t i = commands.getCommands().size(); i-- > 0;)
            commands.getCommands()[i]->release();
        commands.clear();
    };
    oneFrame();  // warm-up: pools and queue grow here
    vurel_test::AllocationCounter counter;
    for (int i = 0; i < 5; ++i)
        oneFrame();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(counting.calls, 12);
    gui().removeMouseListener(&counting);
    gui::Widget::destroy(panel);
}
