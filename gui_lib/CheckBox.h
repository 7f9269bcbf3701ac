#pragma once

#include "ToggleButton.h"

namespace gui {

namespace skin {
class CheckBoxSkin;
}

// A toggle whose skin also paints a check mark for the on and mixed states.
class VUREL_EXPORT CheckBox : public ToggleButton {
public:
    // Makes a CheckBoxSkin and loads "checkBoxSkin".
    explicit CheckBox(int state = 0);

    char const* getWidgetType() const override { return "CheckBox"; }
    Widget* clone() const override;

    // The work of ToggleButton, then the state once more, which changes nothing.
    void copyParams(CheckBox* target) const;
    skin::CheckBoxSkin* getCheckBoxSkin() const;
};

}  // namespace gui
