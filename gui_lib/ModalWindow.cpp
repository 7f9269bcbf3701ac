#include "ModalWindow.h"

#include "Application.h"
#include "Skin/Skin.h"
#include "WidgetHandler.h"
#include "WindowView.h"
#include "WindowsManager.h"
#include "layouts/Layout.h"

namespace gui {

ModalWindow::ModalWindow(bool subclassSkin) {
    createHeaderAndView_();
    if (!subclassSkin)
        createWindowSkin_("modalWindowSkin");
}

ModalWindow::~ModalWindow() { setVisible(false); }

Widget* ModalWindow::clone() const {
    auto* copy = new ModalWindow();
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

void ModalWindow::copyParams(ModalWindow* target) const {
    if (!target)
        return;
    target->setText(getText());
    target->setPosition(getPosition());
    target->setSize(getSize());
    target->setEnabled(enabled_);
    target->setZoom(getZoom());
    target->setTooltipText(getTooltipText());
    target->setResourceString(getResourceString());
    if (Layout const* layout = LayoutHandler::get(getLayout()))
        if (Layout* copy = layout->clone())
            target->setLayout(copy->handler());
    if (!view_)
        return;
    for (int i = 0; i < view_->getWidgetCount(); ++i)
        if (Widget const* child = view_->getWidget(i))
            if (Widget* copy = child->clone())
                target->insertWidget(copy, -1);
}

void ModalWindow::kill() {
    killed_ = true;
    setVisible(false);
}

void ModalWindow::onVisibleChanged_(bool visible) {
    WindowBase::onVisibleChanged_(visible);
    WindowsManager* manager = getManager_();
    if (!visible) {
        if (manager)
            manager->hideModalWindow(this);
        return;
    }
    if (manager)
        manager->showModalWindow(this);
    // Last: the window may be gone when the nested loop returns.
    if (lockFlow_)
        doModal_();
}

void ModalWindow::doModal_() {
    Application* app = Application::get();
    WidgetHandler* const self = handler_;
    while (app && app->getRunning() && getVisible(false)) {
        app->processModal();
        // Something inside the loop may have destroyed this window outright.
        if (!WidgetHandler::get(self))
            return;
        app = Application::get();
    }
    if (killed_)
        WindowBase::kill();
}

}  // namespace gui
