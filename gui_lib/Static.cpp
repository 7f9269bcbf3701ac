#include "Static.h"

#include "Skin/GraphicCommands.h"
#include "Skin/StaticSkin.h"
#include "rast/Renderer.h"

namespace gui {

Static::Static(bool noSkin) {
    if (noSkin)
        return;
    setSkin_(new skin::StaticSkin(this, true));
    skin_->load("staticSkin");
}

Widget* Static::clone() const {
    auto* copy = new Static(false);
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

void Static::copyParams(Static* target) const {
    if (!target)
        return;
    Widget::copyParams(target);
    target->setAngle(angleDegrees_);
    target->setPivotPoint(pivotPoint_);
}

void Static::setAngle(double degrees) {
    if (degrees != angleDegrees_)
        onAngleChanged_(degrees);
}

// The matrix is built at draw time, so turning needs no repaint.
void Static::onAngleChanged_(double degrees) {
    angleDegrees_ = degrees;
    angleRadians_ = degrees / 180.0 * 3.141592653589793;
}

void Static::setPivotPoint(osg::Vec2i const& pivot) {
    if (pivot != pivotPoint_)
        onPivotPointChanged_(pivot);
}

void Static::onPivotPointChanged_(osg::Vec2i const& pivot) { pivotPoint_ = pivot; }

void Static::drawModelView_() {
    if (angleRadians_ == 0.0) {
        Widget::drawModelView_();
        return;
    }
    // Turn about the pivot: move the pivot to the origin, turn (the axis
    // points away from the viewer, so positive is clockwise), move back into place.
    osg::Vec2i const position = getTargetPosition_();
    rastRenderer::ModelViewMatrixGuard guard;
    guard.makeIdentity()
        .makeTranslate(static_cast<float>(-pivotPoint_.x), static_cast<float>(-pivotPoint_.y), 0.0f)
        .makeRotate(static_cast<float>(angleRadians_), 0.0f, 0.0f, -1.0f)
        .setTranslate(static_cast<float>(position.x + pivotPoint_.x), static_cast<float>(position.y + pivotPoint_.y),
                      0.0f);
    draw_();
    drawFocusRect_();
}

void Static::makeModelView_(GraphicCommands* commands) {
    if (angleRadians_ == 0.0) {
        Widget::makeModelView_(commands);
        return;
    }
    osg::Vec2i const position = getTargetPosition_();
    GraphicCommandModelViewMatrixGuard guard(*commands);
    guard.makeIdentity()
        .makeTranslate(static_cast<float>(-pivotPoint_.x), static_cast<float>(-pivotPoint_.y), 0.0f)
        .makeRotate(static_cast<float>(angleRadians_), 0.0f, 0.0f, -1.0f)
        .setTranslate(static_cast<float>(position.x + pivotPoint_.x), static_cast<float>(position.y + pivotPoint_.y),
                      0.0f);
    make_(commands);
    makeFocusRect_(commands);
}

}  // namespace gui
