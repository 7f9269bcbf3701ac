#include "ButtonBase.h"

#include "WidgetHandler.h"
#include "WindowsManager.h"

namespace gui {

int ButtonBase::getInteractiveState() const {
    return getInteractiveState_(mouseInside_ || keyPressed_, mousePressed_ || keyPressed_);
}

void ButtonBase::changeState_() { onChange_(); }

void ButtonBase::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonLeft) {
        mousePressed_ = true;
        setDirty(DirtySelf);
        // The capture keeps the moves coming while the pointer is outside.
        if (WindowsManager* manager = WindowsManager::get(getRootSurfaceId()))
            manager->captureMouse(handler_);
    }
    Widget::onMouseDown(point, button);
}

void ButtonBase::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) { onMouseDown(point, button); }

void ButtonBase::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonLeft) {
        bool const fire = mousePressed_ && mouseInside_;
        mousePressed_ = false;
        setDirty(DirtySelf);
        // Released before the change, so that a callback opening a window
        // meets a free mouse.
        if (WindowsManager* manager = WindowsManager::get(getRootSurfaceId()))
            manager->releaseMouse(handler_);
        if (fire) {
            WidgetHandler* const self = handler_;
            changeState_();
            // The change may have destroyed this button with its window.
            if (!WidgetHandler::get(self))
                return;
        }
    }
    Widget::onMouseUp(point, button);
}

void ButtonBase::onMouseMove(osg::Vec2i const& point) {
    if (mousePressed_) {
        bool const inside = getScreenPointInside(point);
        if (inside != mouseInside_) {
            mouseInside_ = inside;
            setDirty(DirtySelf);
        }
    }
    Widget::onMouseMove(point);
}

void ButtonBase::onMouseEnter(osg::Vec2i const& point) {
    mouseInside_ = true;
    setDirty(DirtySelf);
    Widget::onMouseEnter(point);
}

void ButtonBase::onMouseLeave(osg::Vec2i const& point) {
    mouseInside_ = false;
    setDirty(DirtySelf);
    Widget::onMouseLeave(point);
}

void ButtonBase::onMouseReleased() {
    Widget::onMouseReleased();
    mousePressed_ = false;
    setDirty(DirtySelf);
}

bool ButtonBase::onKeyDown(KeyboardButton button, int value) {
    if (!isPressKey_(button)) {
        Widget::onKeyDown(button, value);
        return false;
    }
    // Auto-repeat only sets the flag again.
    keyPressed_ = true;
    setDirty(DirtySelf);
    Widget::onKeyDown(button, value);
    return true;
}

bool ButtonBase::onKeyUp(KeyboardButton button, int value) {
    bool handled = false;
    // A key that went down on another widget does nothing here.
    if (isPressKey_(button) && keyPressed_) {
        keyPressed_ = false;
        setDirty(DirtySelf);
        WidgetHandler* const self = handler_;
        changeState_();
        if (!WidgetHandler::get(self))
            return true;
        handled = true;
    }
    Widget::onKeyUp(button, value);
    return handled;
}

void ButtonBase::onFocusChanged_(bool focused) {
    // The key-up of a key held while the focus leaves goes elsewhere: the
    // press is dropped without a change.
    if (!focused && keyPressed_) {
        keyPressed_ = false;
        setDirty(DirtySelf);
    }
    Widget::onFocusChanged_(focused);
}

}  // namespace gui
