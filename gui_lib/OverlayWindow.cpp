#include "OverlayWindow.h"

#include "Skin/Skin.h"
#include "WindowView.h"
#include "WindowsManager.h"

namespace gui {

OverlayWindow::OverlayWindow() {
    createHeaderAndView_();
    createWindowSkin_("windowSkin");
}

OverlayWindow::~OverlayWindow() {
    if (visible_)
        if (WindowsManager* manager = getManager_())
            manager->hideOverlayWindow(this);
}

Widget* OverlayWindow::clone() const {
    auto* copy = new OverlayWindow();
    skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

void OverlayWindow::copyParams(OverlayWindow* target) const {
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

void OverlayWindow::setZOrder(int zOrder) {
    if (zOrder != zOrder_)
        onZOrderChanged_(zOrder);
}

void OverlayWindow::onZOrderChanged_(int zOrder) {
    WindowsManager* manager = getManager_();
    if (manager && visible_)
        manager->hideOverlayWindow(this);
    zOrder_ = zOrder;
    if (manager && visible_)
        manager->showOverlayWindow(this);
}

void OverlayWindow::onVisibleChanged_(bool visible) {
    WindowBase::onVisibleChanged_(visible);
    WindowsManager* manager = getManager_();
    if (!manager)
        return;
    if (visible)
        manager->showOverlayWindow(this);
    else
        manager->hideOverlayWindow(this);
}

}  // namespace gui
