#include "Skin/ButtonSkins.h"

#include <algorithm>

#include "Button.h"
#include "CheckBox.h"
#include "RadioButton.h"
#include "Skin/CheckBoxData.h"
#include "ToggleButton.h"

namespace gui::skin {

// ---------------------------------------------------------------- ButtonSkin, ToggleButtonSkin

ButtonSkin::ButtonSkin(Button* button) : Skin(button, true) {}

void ButtonSkin::setWidget(Button* button) {
    widget_ = button;
    // Everything is rebuilt for the new widget's size and text.
    textChanged_ = true;
    sizeChanged_ = true;
    updateWidget(true);
}

ToggleButtonSkin::ToggleButtonSkin(ToggleButton* button) : Skin(button, true) {}

// ---------------------------------------------------------------- CheckBaseSkin

CheckBaseSkin::CheckBaseSkin(ToggleButton* button) : Skin(button, false) {
    data_ = new CheckBoxData(this);
    ownsData_ = true;
}

CheckBaseSkin::~CheckBaseSkin() { delete checkImage_; }

// Null when other data was set in place of the painter's own.
CheckBoxData* CheckBaseSkin::getSkinData() const { return dynamic_cast<CheckBoxData*>(data_); }

osg::Vec2i CheckBaseSkin::calcPictureSize_(InteractiveState state, int inner) const {
    osg::Vec2i size = Skin::calcPictureSize_(state, inner);
    CheckBoxData const* data = getSkinData();
    if (Image::Info const* check = data ? data->getCheck(state, inner) : nullptr) {
        osg::Vec2i const mark = calcImageSize_(*check);
        size = {std::max(size.x, mark.x), std::max(size.y, mark.y)};
    }
    return size;
}

osg::Recti CheckBaseSkin::getFocusRectBounds_() const {
    if (!checkImage_ || !widget_)
        return Skin::getFocusRectBounds_();
    osg::Vec2i const size = widget_->getSize();
    return {checkImage_->getOrigin().x + checkImage_->getSize().x, 0, size.x, size.y};
}

void CheckBaseSkin::redraw_() {
    Skin::redraw_();
    if (data_ && widget_)
        redrawCheck_(static_cast<InteractiveState>(widget_->getInteractiveState()), widget_->getInnerState());
}

void CheckBaseSkin::redrawCheck_(InteractiveState state, int inner) {
    CheckBoxData const* data = getSkinData();
    redrawImage_(checkImage_, data ? data->getCheck(state, inner) : nullptr);
}

void CheckBaseSkin::doRedraw() {
    // The mark first: the base's target pass draws it.
    if (checkImage_)
        checkImage_->doRedraw();
    Skin::doRedraw();
}

void CheckBaseSkin::draw_() {
    drawBkg_();
    beginClipByInsets();
    drawImage_();
    drawText_();
    drawCheck_();
    endClipByInsets();
}

void CheckBaseSkin::drawCheck_() {
    if (checkImage_)
        checkImage_->draw();
}

void CheckBaseSkin::make_(GraphicCommands* commands) {
    makeBkg_(commands);
    makeBeginClipByInsets(commands);
    makeImage_(commands);
    makeText_(commands);
    makeCheck_(commands);
    makeEndClipByInsets(commands);
}

void CheckBaseSkin::makeCheck_(GraphicCommands* commands) {
    if (checkImage_ && commands)
        checkImage_->make(commands);
}

CheckBoxSkin::CheckBoxSkin(CheckBox* checkBox) : CheckBaseSkin(checkBox) {}

RadioButtonSkin::RadioButtonSkin(RadioButton* radioButton) : CheckBaseSkin(radioButton) {}

}  // namespace gui::skin
