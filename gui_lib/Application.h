#pragma once

#include <functional>
#include <memory>

#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Vec2i.h"

namespace gui {

// The toolkit's picture of the program around it: main window, clock, key
// state, mouse cursor, clipboard. The embedding program derives from it,
// stores the instance in `instance_`, and supplies the operating-system part.
// It exists before gui::GUI::create and is destroyed after gui::GUI::destroy.
class VUREL_EXPORT Application {
public:
    using UpdateCallback = std::shared_ptr<std::function<void()>>;

    static Application* get() { return instance_; }
    // Deletes the instance and clears it.
    static void destroy();

    // Prepares the platform (video, input); false when that is impossible.
    virtual bool init() = 0;
    // Stores the requested size and the flag, then creates the window.
    virtual bool createMainWindow(int width, int height, bool fullScreen);
    virtual void setFullScreen(bool fullScreen) = 0;
    virtual bool getFullScreen() const { return fullScreen_; }
    virtual void setWindowTitle(orm::basic_string<char> const& title) = 0;
    virtual void setFramerate(int framerate) { framerate_ = framerate; }
    virtual int getFramerate() const { return framerate_; }
    virtual void addUpdateCallback(UpdateCallback const& callback);
    virtual void removeUpdateCallback(UpdateCallback const& callback);
    virtual void setOnQuitCallback(std::function<void()> callback) { onQuitCallback_ = std::move(callback); }
    virtual void setOnActivateCallback(std::function<void(bool)> callback) {
        onActivateCallback_ = std::move(callback);
    }
    // Runs the main loop until getRunning turns false.
    virtual int run() = 0;
    // Turns pending operating-system events into gui::GUI input calls.
    virtual void processEvents() = 0;
    // Shows the frame drawn last.
    virtual void swapBuffers() = 0;
    // The file extension screenshots get, spelled as it always was.
    virtual orm::basic_string<char> getScreenshotExtention() const { return {}; }
    // One frame of the program's own work and drawing; empty here.
    virtual void update() {}
    virtual void draw() {}
    virtual bool getRunning() const { return running_; }
    // Writes the current frame to `file`; false when it cannot.
    virtual bool makeScreenshot(char const* file) = 0;
    // The loop body run once, from inside a modal window's nested loop.
    virtual void processModal() { update(); }
    virtual void quit() { running_ = false; }
    // Asked to quit: the quit callback decides, without one the loop ends.
    virtual void onQuit();
    virtual void onActivate(bool active);
    virtual bool getActive() const { return active_; }
    // Seconds since some fixed point; drives double clicks and timed updates.
    virtual double getTime() const = 0;
    virtual void setClipboardText(orm::basic_string<wchar_t> const& text) = 0;
    virtual orm::basic_string<wchar_t> getClipboardText() const = 0;
    // Whether the key is held now; used for modifiers.
    virtual bool isKeyPressed(KeyboardButton button) const = 0;
    virtual void setMouseCursor(int cursorId) = 0;
    virtual void showMouseCursor(bool show) = 0;
    virtual void setMousePosition(osg::Vec2i const& position) = 0;
    virtual void setMouseCapture(bool capture) = 0;
    virtual osg::Vec2i getDesktopSize() const = 0;
    virtual osg::Vec2i getMouseCursorSize() const = 0;
    // The mouse position in window pixels.
    virtual osg::Vec2i getMousePosition() const = 0;
    virtual void setWindowPosition(osg::Vec2i const& position) = 0;
    virtual osg::Vec2i getWindowPosition() const = 0;
    virtual void setWindowSize(osg::Vec2i const& size) = 0;
    virtual void windowPlacementInfoInvalidate() {}
    virtual ~Application();

    void resetCallbacks();
    osg::Vec2i const& getSize() const { return size_; }
    osg::Vec2i const& getRequestedSize() const { return requestedSize_; }

protected:
    Application();
    // Creates the window for createMainWindow; sets `size_` on success.
    virtual bool createMainWindow_(int width, int height, bool fullScreen) = 0;
    // Runs the update callbacks, for the main loop of a subclass.
    void runUpdateCallbacks_();

    static Application* instance_;

    osg::Vec2i size_;
    osg::Vec2i requestedSize_;
    bool fullScreen_ = false;
    bool running_ = true;
    int framerate_ = 1000;
    bool active_ = false;
    orm::vector<UpdateCallback> updateCallbacks_;
    std::function<void()> onQuitCallback_;
    std::function<void(bool)> onActivateCallback_;
};

}  // namespace gui
