#include "Window.h"

#include "Skin/Skin.h"
#include "WidgetHandler.h"
#include "WindowView.h"
#include "WindowsManager.h"

namespace gui {

Window::Window() {
    createHeaderAndView_();
    createWindowSkin_("windowSkin");
}

Window::~Window() {
    if (visible_)
        if (WindowsManager* manager = getManager_())
            manager->hideNormalWindow(this);
}

Widget* Window::clone() const {
    auto* copy = new Window();
    skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

void Window::copyParams(Window* target) const {
    if (!target)
        return;
    Container::copyParams(target);
    if (!view_)
        return;
    for (int i = 0; i < view_->getWidgetCount(); ++i)
        if (Widget const* child = view_->getWidget(i))
            if (Widget* copy = child->clone())
                target->insertWidget(copy, -1);
}

void Window::setZOrder(int zOrder) {
    if (zOrder != zOrder_)
        onZOrderChanged_(zOrder);
}

void Window::onZOrderChanged_(int zOrder) {
    // Leaving and joining again puts the window at its new place in the stack.
    WindowsManager* manager = getManager_();
    if (manager && visible_)
        manager->hideNormalWindow(this);
    zOrder_ = zOrder;
    if (manager && visible_)
        manager->showNormalWindow(this);
}

void Window::setTransparentForUserInput(bool transparent) {
    if (transparent == transparentForUserInput_)
        return;
    transparentForUserInput_ = transparent;
    if (WindowsManager* manager = getManager_())
        manager->setWindowTransparentForUserInput(transparent ? this : nullptr);
}

void Window::onVisibleChanged_(bool visible) {
    WindowBase::onVisibleChanged_(visible);
    WindowsManager* manager = getManager_();
    if (!manager)
        return;
    if (visible)
        manager->showNormalWindow(this);
    else
        manager->hideNormalWindow(this);
}

void Window::onFocusChanged_(bool focused) {
    if (focused)
        if (WindowsManager* manager = getManager_())
            manager->bringWindowForward(this);
    WindowBase::onFocusChanged_(focused);
}

}  // namespace gui
