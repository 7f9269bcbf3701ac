#pragma once

#include "ButtonBase.h"

namespace gui {

// A button with a tri-state value: 0 off, 1 on, -1 mixed. A click turns a
// button that is off or mixed on, and one that is on off; setState from code
// changes the value without raising "widget change". The skin sees the value
// as the inner state: 1 off, 2 on, 3 mixed.
class VUREL_EXPORT ToggleButton : public ButtonBase {
public:
    // With `noSkin` a subclass brings its own skin; otherwise the button
    // makes a ToggleButtonSkin and loads "toggleButtonSkin".
    explicit ToggleButton(int state = 0, bool noSkin = false);

    char const* getWidgetType() const override { return "ToggleButton"; }
    Widget* clone() const override;
    bool getFocusable() const override { return true; }
    int getInnerState() const override;

    // Any positive value is stored as 1, any negative one as -1.
    virtual void setState(int state);
    virtual int getState() const { return state_; }

    // The work of Widget, then the state.
    void copyParams(ToggleButton* target) const;

protected:
    void changeState_() override;

    virtual void onStateChanged_(int state);
    virtual int validateState_(int state) const;

    int state_ = 0;
};

}  // namespace gui
