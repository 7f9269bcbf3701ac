#include "WindowsManager.h"

#include "GUI.h"

namespace gui {

// Window kinds register with the manager as they are shown. Until a window
// is shown every list is empty, so no message is taken and nothing draws.

WindowsManager::WindowsManager(int surfaceId) : surfaceId_(surfaceId) {}

WindowsManager::~WindowsManager() = default;

WindowsManager* WindowsManager::get(int surfaceId) {
    GUI* gui = GUI::get();
    return gui ? gui->getWindowsManager(surfaceId) : nullptr;
}

bool WindowsManager::hasWindows() const {
    return !normalWindows_.empty() || !popupWindows_.empty() || !modalWindows_.empty() || !overlayWindows_.empty();
}

bool WindowsManager::onMouseDown(MouseButton, bool) { return false; }
bool WindowsManager::onMouseMove(osg::Vec2i const&) { return false; }
bool WindowsManager::onMouseUp(MouseButton) { return false; }
bool WindowsManager::onMouseWheel(int) { return false; }
bool WindowsManager::onKeyDown(KeyboardButton, int) { return false; }
bool WindowsManager::onKeyUp(KeyboardButton, int) { return false; }
bool WindowsManager::onChar(KeyboardButton, int) { return false; }
bool WindowsManager::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const { return !modalWindows_.empty(); }
void WindowsManager::captureMouse(WidgetHandler* handle) { capturedWidget_ = handle; }
void WindowsManager::releaseMouse(WidgetHandler* handle) {
    if (!handle || handle == capturedWidget_)
        capturedWidget_ = nullptr;
}
void WindowsManager::rebuildHandles() {}
void WindowsManager::parse() {}
void WindowsManager::draw() {}
void WindowsManager::make(GraphicCommands*) {}
void WindowsManager::setAllWindowsDirty(int) {}

}  // namespace gui
