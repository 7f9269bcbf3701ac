#include "ToggleButton.h"

#include "Skin/ButtonSkins.h"

namespace gui {

ToggleButton::ToggleButton(int state, bool noSkin) {
    state_ = validateState_(state);
    if (noSkin)
        return;
    setSkin_(new skin::ToggleButtonSkin(this));
    skin_->load("toggleButtonSkin");
}

Widget* ToggleButton::clone() const {
    auto* copy = new ToggleButton(0, false);
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    copy->setState(getState());
    return copy;
}

void ToggleButton::copyParams(ToggleButton* target) const {
    if (!target)
        return;
    Widget::copyParams(target);
    target->setState(getState());
}

int ToggleButton::getInnerState() const {
    if (state_ > 0)
        return 2;
    return state_ < 0 ? 3 : 1;
}

int ToggleButton::validateState_(int state) const {
    if (state > 0)
        return 1;
    return state < 0 ? -1 : 0;
}

void ToggleButton::setState(int state) {
    int const valid = validateState_(state);
    if (valid != state_)
        onStateChanged_(valid);
}

void ToggleButton::onStateChanged_(int state) {
    state_ = state;
    setDirty(DirtySelf);
}

void ToggleButton::changeState_() {
    // A click never leads to mixed: off and mixed go on, on goes off.
    state_ = state_ <= 0 ? 1 : 0;
    setDirty(DirtySelf);
    onChange_();
}

}  // namespace gui
