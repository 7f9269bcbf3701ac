#pragma once

#include "SwitchButton.h"

namespace gui {

namespace skin {
class RadioButtonSkin;
}

// A switch button whose skin also paints a check mark, as radio buttons do.
class VUREL_EXPORT RadioButton : public SwitchButton {
public:
    // Makes a RadioButtonSkin and loads "radioButtonSkin"; the button starts off.
    RadioButton();

    char const* getWidgetType() const override { return "RadioButton"; }
    Widget* clone() const override;

    skin::RadioButtonSkin* getRadioButtonSkin() const;
};

}  // namespace gui
