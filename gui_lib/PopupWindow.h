#pragma once

#include "WindowBase.h"

namespace gui {

// A window that floats above all others of its surface and closes when the
// user clicks elsewhere. A click inside keeps the popups that are active.
// The subclass brings the skin and the content.
class VUREL_EXPORT PopupWindow : public WindowBase {
public:
    PopupWindow();
    ~PopupWindow() override;

    void setFocused(bool focused) override;
    // Always true: the wheel never passes through a popup.
    bool onMouseWheel(osg::Vec2i const& point, int delta) override;

    void setActive(bool active);
    bool getActive() const { return active_; }

protected:
    void onVisibleChanged_(bool visible) override;

    virtual void onActiveChanged_(bool active) { active_ = active; }

    bool active_ = false;
};

// A popup tied to another widget: keys it does not take itself go to that
// widget, so typing continues in the owner while the popup is open.
class VUREL_EXPORT BuddyWindow : public PopupWindow {
public:
    BuddyWindow();

    bool onKeyDown(KeyboardButton button, int value) override;
    bool onChar(KeyboardButton button, int value) override;
    bool onKeyUp(KeyboardButton button, int value) override;

    void setBuddyWidget(Widget* widget) { buddy_ = widget ? widget->handler() : nullptr; }
    Widget* getBuddyWidget() const;

protected:
    WidgetHandler* buddy_ = nullptr;
};

}  // namespace gui
