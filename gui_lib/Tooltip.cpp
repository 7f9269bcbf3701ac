#include "Tooltip.h"

#include "Application.h"
#include "GUI.h"
#include "Skin/TooltipSkin.h"
#include "WidgetHandler.h"
#include "WindowsManager.h"

namespace gui {

Tooltip::Tooltip(WindowsManager* manager) : manager_(manager) {
    setSkin_(new skin::TooltipSkin(this));
    skin_->load("tooltipSkin");
    visible_ = false;
}

skin::TooltipSkin* Tooltip::getTooltipSkin_() const { return static_cast<skin::TooltipSkin*>(skin_); }

int Tooltip::getRootSurfaceId() const { return manager_ ? manager_->getSurfaceId() : 0; }

void Tooltip::onTextChanged_(orm::basic_string<wchar_t> const& text) {
    Widget::onTextChanged_(text);
    setSize(calcSize());
}

osg::Vec2i Tooltip::calcScreenPosition() const {
    GUI const* gui = GUI::get();
    Application const* app = Application::get();
    if (!gui || !app)
        return getPosition();
    osg::Vec2i const mouse = gui->getMousePosition(getRootSurfaceId());
    int cursorHeight = app->getMouseCursorSize().y;
    if (cursorHeight <= 0)
        cursorHeight = 32;
    // 20 pixels under a cursor of 32.
    int const d = static_cast<int>(cursorHeight * 20.0 * 0.03125);
    osg::Vec2i const screen = gui->getScreenPosition();
    osg::Vec2i const window = app->getSize();
    int y = mouse.y + d;
    if (screen.y + y + size_.y > window.y)
        y = mouse.y - size_.y - d;
    int x = mouse.x;
    int const over = size_.x - window.x + screen.x + mouse.x;
    if (over > 0) {
        x = mouse.x - over;
        if (x <= 0)
            x = 0;
    }
    return {x, y};
}

TooltipUpdateTarget::TooltipUpdateTarget(Tooltip* tooltip, WindowsManager* manager)
    : tooltip_(tooltip ? tooltip->handler() : nullptr), manager_(manager) {}

TooltipUpdateTarget::~TooltipUpdateTarget() {
    if (UpdateManager* updates = UpdateManager::get())
        updates->removeTarget(this);
}

double TooltipUpdateTarget::getStartTime_() const {
    auto const* tooltip = static_cast<Tooltip const*>(WidgetHandler::get(tooltip_));
    skin::TooltipData const* data = tooltip ? tooltip->getTooltipSkin_()->getTooltipData() : nullptr;
    return data ? data->getStartTime() : 0.5;
}

double TooltipUpdateTarget::getDuration_() const {
    auto const* tooltip = static_cast<Tooltip const*>(WidgetHandler::get(tooltip_));
    skin::TooltipData const* data = tooltip ? tooltip->getTooltipSkin_()->getTooltipData() : nullptr;
    return data ? data->getDuration() : 4.0;
}

void TooltipUpdateTarget::restart() {
    UpdateManager* updates = UpdateManager::get();
    if (!updates)
        return;
    double const now = updates->getTime();
    startedAt_ = now;
    double const startTime = getStartTime_();
    // A tooltip went only just now: the next one comes up after 0.1 s.
    if (startTime > now - lastHiddenAt_)
        startedAt_ = now - (startTime - 0.1);
    updates->addTarget(this);
}

void TooltipUpdateTarget::hide() {
    UpdateManager* updates = UpdateManager::get();
    Widget* tooltip = WidgetHandler::get(tooltip_);
    if (tooltip && tooltip->getVisible(false) && updates)
        lastHiddenAt_ = updates->getTime();
    if (tooltip)
        tooltip->setVisible(false);
    if (updates)
        updates->removeTarget(this);
}

void TooltipUpdateTarget::update(double time) {
    auto* tooltip = static_cast<Tooltip*>(WidgetHandler::get(tooltip_));
    if (!tooltip || !manager_)
        return;
    double const elapsed = time - startedAt_;
    orm::basic_string<wchar_t> const& text = manager_->getTooltipText();
    if (text.empty() || elapsed > getDuration_()) {
        hide();
        return;
    }
    if (elapsed >= getStartTime_()) {
        if (!tooltip->getVisible(false)) {
            if (manager_->prepareTooltip())
                tooltip->setVisible(true);
            else
                hide();
        }
        tooltip->setPosition(tooltip->calcScreenPosition());
        return;
    }
    // The same text stays up while the mouse moves over the same widget.
    if (tooltip->getVisible(false) && tooltip->getText() != text)
        hide();
}

}  // namespace gui
