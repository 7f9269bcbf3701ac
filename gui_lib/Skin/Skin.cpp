#include "Skin/Skin.h"

#include "GUI.h"
#include "Skin/GraphicCommands.h"
#include "Skin/SkinData.h"
#include "Widget.h"
#include "rast/Renderer.h"

namespace gui::skin {

Skin::Skin(Widget* widget, bool createData) : widget_(widget), data_(createData ? new Data(this) : nullptr) {}

Skin::~Skin() {
    if (ownsData_)
        delete data_;
}

void Skin::setSkinData(Data* data, bool owns) {
    if (data == data_) {
        ownsData_ = owns;
        return;
    }
    if (ownsData_)
        delete data_;
    data_ = data;
    ownsData_ = owns;
    updateWidget(true);
}

osg::Vec2i Skin::calcSize() const {
    if (!data_)
        return {};
    Insets const& i = data_->getInsets();
    return {i.left + i.right, i.top + i.bottom};
}

void Skin::load(orm::basic_string<char> const&) {
    // Skin tables are read from the script by the Lua value readers; a skin
    // that is not found keeps its defaults, which is what happens here.
}

void Skin::updateWidget(bool sizeChanged) {
    if (!widget_)
        return;
    widget_->setDirty(Widget::DirtySelf);
    if (sizeChanged)
        widget_->setDirtySize(true);
}

void Skin::copyTo(Skin* target) const {
    if (!target || target == this)
        return;
    if (data_) {
        if (!target->data_)
            target->setSkinData(new Data(target), true);
        data_->copyTo(target->data_);
    }
}

void Skin::redraw_() {
    textChanged_ = false;
    sizeChanged_ = false;
}

void Skin::doRedraw() {}

void Skin::draw() {
    rastRenderer::OpacityGuard opacity(widget_ ? widget_->getOpacity() : 1.0f);
    draw_();
}

void Skin::draw_() {
    beginClipByInsets();
    drawChildren_();
    endClipByInsets();
}

void Skin::drawChildren_() {
    if (widget_)
        widget_->drawChildren();
}

void Skin::make(GraphicCommands* commands) {
    GraphicCommandOpacityGuard opacity(*commands, widget_ ? widget_->getOpacity() : 1.0f);
    make_(commands);
}

void Skin::make_(GraphicCommands* commands) {
    makeBeginClipByInsets(commands);
    makeChildren_(commands);
    makeEndClipByInsets(commands);
}

void Skin::makeChildren_(GraphicCommands* commands) {
    if (widget_)
        widget_->makeChildren(commands);
}

namespace {

// The rectangle inside the clip insets, in target pixels.
osg::Recti clipRectByInsets(Widget const& widget, Insets const& clip) {
    GUI const* gui = GUI::get();
    osg::Vec2i const p = widget.widgetToScreen(osg::Vec2i(clip.left, clip.top)) + gui->getViewportPosition();
    osg::Vec2i const size = widget.getSize();
    osg::Vec2f const f = gui->getOffscreenScaleFactor();
    auto scaled = [](int v, float k) { return static_cast<int>(static_cast<float>(v) * k); };
    return {scaled(p.x, f.x), scaled(p.y, f.y), scaled(p.x + size.x - clip.left - clip.right, f.x),
            scaled(p.y + size.y - clip.top - clip.bottom, f.y)};
}

}  // namespace

void Skin::beginClipByInsets() {
    if (!widget_ || !data_ || data_->getClipInsetsEmpty())
        return;
    rastRenderer::get()->pushClipRect(clipRectByInsets(*widget_, data_->getClipInsets()));
}

void Skin::endClipByInsets() {
    if (!widget_ || !data_ || data_->getClipInsetsEmpty())
        return;
    rastRenderer::get()->popClipRect();
}

void Skin::makeBeginClipByInsets(GraphicCommands* commands) {
    if (!widget_ || !data_ || data_->getClipInsetsEmpty())
        return;
    commands->pushClipRect(clipRectByInsets(*widget_, data_->getClipInsets()));
}

void Skin::makeEndClipByInsets(GraphicCommands* commands) {
    if (!widget_ || !data_ || data_->getClipInsetsEmpty())
        return;
    commands->popClipRect();
}

}  // namespace gui::skin
