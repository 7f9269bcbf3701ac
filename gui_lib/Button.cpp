#include "Button.h"

#include "Skin/ButtonSkins.h"

namespace gui {

Button::Button(bool noSkin) {
    if (noSkin)
        return;
    setSkin_(new skin::ButtonSkin(this));
    skin_->load("buttonSkin");
}

skin::ButtonSkin* Button::getButtonSkin() const { return dynamic_cast<skin::ButtonSkin*>(skin_); }

Widget* Button::clone() const {
    auto* copy = new Button(false);
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

}  // namespace gui
