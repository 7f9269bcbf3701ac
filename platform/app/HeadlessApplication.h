#pragma once

#include <set>

#include "Application.h"

namespace gui {

// An application without a window: the clock is driven by the caller (so
// runs repeat exactly), keys are pressed and released by the caller, and the
// "window" is a size. Programs that render off-screen, tests and recorded
// sessions use it.
class VUREL_EXPORT HeadlessApplication : public Application {
public:
    explicit HeadlessApplication(osg::Vec2i const& size);
    ~HeadlessApplication() override;

    void setTime(double seconds) { time_ = seconds; }
    void advanceTime(double seconds) { time_ += seconds; }
    void setKeyPressed(KeyboardButton button, bool pressed);

    // Runs one frame of the toolkit: deliver input, update timed targets,
    // rebuild what changed, draw.
    void runFrame();

    bool init() override { return true; }
    void setFullScreen(bool fullScreen) override { fullScreen_ = fullScreen; }
    void setWindowTitle(orm::basic_string<char> const&) override {}
    // Runs frames, a frame's worth of time apart, until quit is called.
    int run() override;
    void processEvents() override {}
    void swapBuffers() override {}
    bool makeScreenshot(char const*) override { return false; }
    double getTime() const override { return time_; }
    void setClipboardText(orm::basic_string<wchar_t> const& text) override { clipboard_ = text; }
    orm::basic_string<wchar_t> getClipboardText() const override { return clipboard_; }
    bool isKeyPressed(KeyboardButton button) const override { return pressed_.count(button) != 0; }
    void setMouseCursor(int cursorId) override { cursor_ = cursorId; }
    void showMouseCursor(bool) override {}
    void setMousePosition(osg::Vec2i const& position) override { mouse_ = position; }
    void setMouseCapture(bool) override {}
    osg::Vec2i getDesktopSize() const override { return size_; }
    osg::Vec2i getMouseCursorSize() const override { return {16, 16}; }
    osg::Vec2i getMousePosition() const override { return mouse_; }
    void setWindowPosition(osg::Vec2i const&) override {}
    osg::Vec2i getWindowPosition() const override { return {}; }
    void setWindowSize(osg::Vec2i const& size) override { size_ = size; }
    int getMouseCursor() const { return cursor_; }

protected:
    bool createMainWindow_(int width, int height, bool) override;

private:
    double time_ = 0.0;
    std::set<int> pressed_;
    osg::Vec2i mouse_;
    orm::basic_string<wchar_t> clipboard_;
    int cursor_ = 0;
};

}  // namespace gui
