#pragma once

#include "ButtonBase.h"

namespace gui {

namespace skin {
class ButtonSkin;
}

// The plain push button: a click or Space/Return raises "widget change".
class VUREL_EXPORT Button : public ButtonBase {
public:
    // With `noSkin` a subclass brings its own skin; otherwise the button
    // makes a ButtonSkin and loads "buttonSkin".
    explicit Button(bool noSkin = false);

    char const* getWidgetType() const override { return "Button"; }
    Widget* clone() const override;
    bool getFocusable() const override { return true; }

    skin::ButtonSkin* getButtonSkin() const;
};

}  // namespace gui
