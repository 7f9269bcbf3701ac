#include "Skin/SkinData.h"

#include "Skin/Skin.h"

namespace gui::skin {

Data::Data(Skin* owner) : owner_(owner) {}

void Data::ownerSkinUpdateWidget(bool sizeChanged) {
    if (owner_)
        owner_->updateWidget(sizeChanged);
}

void Data::setMinSize(osg::Vec2i const& size) {
    minSize_ = size;
    ownerSkinUpdateWidget(true);
}

void Data::setMaxSize(osg::Vec2i const& size) {
    maxSize_ = size;
    ownerSkinUpdateWidget(true);
}

void Data::setInsets(Insets const& insets) {
    insets_ = insets;
    ownerSkinUpdateWidget(true);
}

void Data::setTextWrapping(bool wrapping) {
    textWrapping_ = wrapping;
    ownerSkinUpdateWidget(false);
}

void Data::setUseEllipsis(bool use) {
    useEllipsis_ = use;
    ownerSkinUpdateWidget(false);
}

void Data::setTextLineHeight(int height) {
    textLineHeight_ = height;
    ownerSkinUpdateWidget(false);
}

void Data::setFocusRectInsets(Insets const& insets) {
    focusRectInsets_ = insets;
    ownerSkinUpdateWidget(false);
}

void Data::setFocusRectColor(osg::Vec4f const& color) {
    focusRectColor_ = color;
    ownerSkinUpdateWidget(false);
}

void Data::setClipInsets(Insets const& insets) {
    clipInsets_ = insets;
    ownerSkinUpdateWidget(false);
}

bool Data::getClipInsetsEmpty() const {
    return clipInsets_.left == 0 && clipInsets_.top == 0 && clipInsets_.right == 0 && clipInsets_.bottom == 0;
}

void Data::copyParams_(Data* target) const {
    target->minSize_ = minSize_;
    target->maxSize_ = maxSize_;
    target->insets_ = insets_;
    target->textWrapping_ = textWrapping_;
    target->useEllipsis_ = useEllipsis_;
    target->textLineHeight_ = textLineHeight_;
    target->focusRectInsets_ = focusRectInsets_;
    target->focusRectColor_ = focusRectColor_;
    target->clipInsets_ = clipInsets_;
}

void Data::copyTo(Data* target) const {
    if (!target)
        return;
    copyParams_(target);
    target->setLoaded();
}

}  // namespace gui::skin
