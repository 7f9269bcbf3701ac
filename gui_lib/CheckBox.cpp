#include "CheckBox.h"

#include "Skin/ButtonSkins.h"

namespace gui {

CheckBox::CheckBox(int state) : ToggleButton(state, true) {
    setSkin_(new skin::CheckBoxSkin(this));
    skin_->load("checkBoxSkin");
}

skin::CheckBoxSkin* CheckBox::getCheckBoxSkin() const { return dynamic_cast<skin::CheckBoxSkin*>(skin_); }

Widget* CheckBox::clone() const {
    auto* copy = new CheckBox(0);
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    copy->setState(getState());
    return copy;
}

void CheckBox::copyParams(CheckBox* target) const {
    if (!target)
        return;
    ToggleButton::copyParams(target);
    target->setState(getState());
}

}  // namespace gui
