#include "TextureView.h"

#include "Skin/GraphicCommands.h"
#include "rast/Renderer.h"

namespace gui {

TextureView::TextureView() = default;

Widget* TextureView::clone() const {
    auto* copy = new TextureView();
    copyParams(copy);
    return copy;
}

void TextureView::copyParams(TextureView* target) const {
    if (!target)
        return;
    Widget::copyParams(target);
    target->setAngle(angleDegrees_);
    target->setPivotPoint(pivotPoint_);
    target->setImageInfo(imageInfo_);
}

void TextureView::setAngle(double degrees) {
    if (degrees != angleDegrees_)
        onAngleChanged_(degrees);
}

void TextureView::onAngleChanged_(double degrees) {
    angleDegrees_ = degrees;
    angleRadians_ = degrees / 180.0 * 3.141592653589793;
}

void TextureView::setPivotPoint(osg::Vec2i const& pivot) {
    if (pivot != pivotPoint_)
        onPivotPointChanged_(pivot);
}

void TextureView::onPivotPointChanged_(osg::Vec2i const& pivot) { pivotPoint_ = pivot; }

void TextureView::setImageInfo(Image::Info const& info) {
    imageInfo_ = info;
    image_.set(imageInfo_);
    setDirty(DirtySelf);
}

void TextureView::setTexture(rastTexture* texture) {
    image_.setTexture(texture, false);
    setDirty(DirtySelf);
}

void TextureView::redraw_() {
    Widget::redraw_();
    image_.redraw(getSize());
}

void TextureView::doRedraw() {
    Widget::doRedraw();
    image_.doRedraw();
}

void TextureView::drawModelView_() {
    // Always the turning path, also at angle 0, and never clipped.
    osg::Vec2i const position = getTargetPosition_();
    rastRenderer::ModelViewMatrixGuard guard;
    guard.makeIdentity()
        .makeTranslate(static_cast<float>(-pivotPoint_.x), static_cast<float>(-pivotPoint_.y), 0.0f)
        .makeRotate(static_cast<float>(angleRadians_), 0.0f, 0.0f, -1.0f)
        .setTranslate(static_cast<float>(position.x + pivotPoint_.x), static_cast<float>(position.y + pivotPoint_.y),
                      0.0f);
    image_.draw();
}

void TextureView::makeModelView_(GraphicCommands* commands) {
    osg::Vec2i const position = getTargetPosition_();
    GraphicCommandModelViewMatrixGuard guard(*commands);
    guard.makeIdentity()
        .makeTranslate(static_cast<float>(-pivotPoint_.x), static_cast<float>(-pivotPoint_.y), 0.0f)
        .makeRotate(static_cast<float>(angleRadians_), 0.0f, 0.0f, -1.0f)
        .setTranslate(static_cast<float>(position.x + pivotPoint_.x), static_cast<float>(position.y + pivotPoint_.y),
                      0.0f);
    image_.make(commands);
}

}  // namespace gui
