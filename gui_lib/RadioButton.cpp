#include "RadioButton.h"

#include "Skin/ButtonSkins.h"

namespace gui {

RadioButton::RadioButton() : SwitchButton(true) {
    setSkin_(new skin::RadioButtonSkin(this));
    skin_->load("radioButtonSkin");
}

skin::RadioButtonSkin* RadioButton::getRadioButtonSkin() const {
    return dynamic_cast<skin::RadioButtonSkin*>(skin_);
}

Widget* RadioButton::clone() const {
    auto* copy = new RadioButton();
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    copy->setState(getState());
    return copy;
}

}  // namespace gui
