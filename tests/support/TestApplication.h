#pragma once

#include <set>

#include "Application.h"

namespace vurel_test {

// An application whose clock, key state, mouse and window size the test sets.
// Creating one makes it the instance; the destructor clears it.
class TestApplication : public gui::Application {
public:
    TestApplication();

    void setTime(double t) { time_ = t; }
    void advanceTime(double dt) { time_ += dt; }
    void setKeyPressed(gui::KeyboardButton button, bool pressed);
    void setSize(osg::Vec2i const& size) { size_ = size; }
    void setMouse(osg::Vec2i const& position) { mouse_ = position; }
    int getModalCalls() const { return modalCalls_; }

    bool init() override { return true; }
    void setFullScreen(bool fullScreen) override { fullScreen_ = fullScreen; }
    void setWindowTitle(orm::basic_string<char> const&) override {}
    int run() override { return 0; }
    void processEvents() override {}
    void swapBuffers() override {}
    bool makeScreenshot(char const*) override { return false; }
    void processModal() override {
        ++modalCalls_;
        Application::processModal();
    }
    double getTime() const override { return time_; }
    void setClipboardText(orm::basic_string<wchar_t> const& text) override { clipboard_ = text; }
    orm::basic_string<wchar_t> getClipboardText() const override { return clipboard_; }
    bool isKeyPressed(gui::KeyboardButton button) const override { return pressed_.count(button) != 0; }
    void setMouseCursor(int cursorId) override { cursor_ = cursorId; }
    void showMouseCursor(bool) override {}
    void setMousePosition(osg::Vec2i const& position) override { mouse_ = position; }
    void setMouseCapture(bool) override {}
    osg::Vec2i getDesktopSize() const override { return {1920, 1080}; }
    osg::Vec2i getMouseCursorSize() const override { return {16, 16}; }
    osg::Vec2i getMousePosition() const override { return mouse_; }
    void setWindowPosition(osg::Vec2i const&) override {}
    osg::Vec2i getWindowPosition() const override { return {}; }
    void setWindowSize(osg::Vec2i const& size) override { size_ = size; }
    int getCursor() const { return cursor_; }

protected:
    bool createMainWindow_(int, int, bool) override { return true; }

private:
    double time_ = 0.0;
    std::set<int> pressed_;
    osg::Vec2i mouse_;
    orm::basic_string<wchar_t> clipboard_;
    int cursor_ = -1;
    int modalCalls_ = 0;
};

}  // namespace vurel_test
