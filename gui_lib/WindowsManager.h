#pragma once

#include <functional>

#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "osg/Vec2i.h"

namespace gui {

class GraphicCommands;
class WidgetHandler;
class WindowBase;

// The windows of one surface: which are shown, in which order they draw, and
// which one gets a mouse or key message. gui::GUI offers every input message
// to the managers of all surfaces in id order until one takes it.
class VUREL_EXPORT WindowsManager {
public:
    using MouseCursorCallback = std::function<void(bool, int, WindowBase*)>;

    explicit WindowsManager(int surfaceId);
    ~WindowsManager();
    WindowsManager(WindowsManager const&) = delete;
    WindowsManager& operator=(WindowsManager const&) = delete;

    static WindowsManager* get(int surfaceId);
    int getSurfaceId() const { return surfaceId_; }

    // Input delivery; each answers whether a window took the message.
    bool onMouseDown(MouseButton button, bool isDouble);
    bool onMouseMove(osg::Vec2i const& position);
    bool onMouseUp(MouseButton button);
    bool onMouseWheel(int delta);
    bool onKeyDown(KeyboardButton button, int value);
    bool onKeyUp(KeyboardButton button, int value);
    bool onChar(KeyboardButton button, int value);

    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const;
    void captureMouse(WidgetHandler* handle);
    void releaseMouse(WidgetHandler* handle);
    void setMouseCursorCallback(MouseCursorCallback callback) { cursorCallback_ = std::move(callback); }

    // Frame stages: rebuild the draw snapshots, parse, draw, mark all dirty.
    void rebuildHandles();
    void parse();
    void draw();
    void make(GraphicCommands* commands);
    void setAllWindowsDirty(int flag);

    bool hasWindows() const;

private:
    int surfaceId_;
    orm::vector<WindowBase*> normalWindows_;
    orm::vector<WindowBase*> popupWindows_;
    orm::vector<WindowBase*> modalWindows_;
    orm::vector<WindowBase*> overlayWindows_;
    MouseCursorCallback cursorCallback_;
    WidgetHandler* capturedWidget_ = nullptr;
};

}  // namespace gui
