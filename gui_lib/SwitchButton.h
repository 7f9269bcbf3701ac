#pragma once

#include "ToggleButton.h"

namespace gui {

// A toggle that excludes its siblings: the SwitchButtons under one parent
// form a group without any group object. Turning one on turns the others
// off, and a click on the member that is on does nothing.
//
// The rule that the others obey depends on this button's state before the
// change: when it was mixed, the others become mixed; otherwise they turn
// off. So setState(1) on a mixed member makes the others mixed, while on a
// member that was off it turns the others off.
class VUREL_EXPORT SwitchButton : public ToggleButton {
public:
    // With `noSkin` a subclass brings its own skin; otherwise the button
    // makes a ToggleButtonSkin and loads "switchButtonSkin". It starts off.
    explicit SwitchButton(bool noSkin = false);
    ~SwitchButton() override;

    char const* getWidgetType() const override { return "SwitchButton"; }
    Widget* clone() const override;
    // Leaves the group, then forgets the parent without telling it.
    void resetParent() override;

    // The work of ToggleButton, then the state once more (the group rule has
    // run by then, so this changes nothing).
    void copyParams(SwitchButton* target) const;

    // Members of the group under `parent`, for tests and tools; 0 without one.
    static int getGroupSize(WidgetHandler const* parent);

protected:
    void changeState_() override;
    void onStateChanged_(int state) override;
    void onParentChanged_(WidgetHandler* parent) override;

    // Sets every other member of the group to off, or to mixed when this
    // button is mixed.
    void applyGroupRule_();
    void joinGroup_();
    void leaveGroup_();
};

}  // namespace gui
