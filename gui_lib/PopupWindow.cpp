#include "PopupWindow.h"

#include "Skin/WindowSkins.h"
#include "WidgetHandler.h"
#include "WindowsManager.h"

namespace gui {

// ---------------------------------------------------------------- PopupWindow

PopupWindow::PopupWindow() = default;

PopupWindow::~PopupWindow() {
    if (WindowsManager* manager = getManager_())
        manager->hidePopupWindow(this);
}

void PopupWindow::setActive(bool active) {
    if (active != active_)
        onActiveChanged_(active);
}

void PopupWindow::setFocused(bool focused) {
    WindowBase::setFocused(focused);
    if (focused != active_)
        onActiveChanged_(focused);
}

bool PopupWindow::onMouseWheel(osg::Vec2i const& point, int delta) {
    WindowBase::onMouseWheel(point, delta);
    return true;
}

void PopupWindow::onVisibleChanged_(bool visible) {
    WindowBase::onVisibleChanged_(visible);
    WindowsManager* manager = getManager_();
    if (!manager)
        return;
    if (visible)
        manager->showPopupWindow(this);
    else
        manager->hidePopupWindow(this);
}

// ---------------------------------------------------------------- BuddyWindow

BuddyWindow::BuddyWindow() { setSkin_(new skin::WindowBaseSkin(this, true)); }

Widget* BuddyWindow::getBuddyWidget() const { return WidgetHandler::get(buddy_); }

bool BuddyWindow::onKeyDown(KeyboardButton button, int value) {
    if (Widget::onKeyDown(button, value))
        return true;
    Widget* buddy = getBuddyWidget();
    return buddy && buddy->onKeyDown(button, value);
}

bool BuddyWindow::onChar(KeyboardButton button, int value) {
    if (Widget::onChar(button, value))
        return true;
    Widget* buddy = getBuddyWidget();
    return buddy && buddy->onChar(button, value);
}

bool BuddyWindow::onKeyUp(KeyboardButton button, int value) {
    if (Widget::onKeyUp(button, value))
        return true;
    Widget* buddy = getBuddyWidget();
    return buddy && buddy->onKeyUp(button, value);
}

}  // namespace gui
