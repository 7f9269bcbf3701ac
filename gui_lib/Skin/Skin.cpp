#include "Skin/Skin.h"

#include <algorithm>
#include <cstdlib>

#include "GUI.h"
#include "Skin/Bkg.h"
#include "Skin/FocusRect.h"
#include "Skin/GraphicCommands.h"
#include "Skin/LuaUtil.h"
#include "Skin/ShaderEffect.h"
#include "Skin/SkinData.h"
#include "Skin/Text.h"
#include "TextUtil.h"
#include "Widget.h"
#include "rast/FrameBuffer.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"

namespace gui::skin {

namespace {

template <class T>
void deleteAndClear(T*& p) {
    delete p;
    p = nullptr;
}

// Pushes field `key` of the table on top of the stack; true when it is a table.
bool pushTableField(lua_State* L, char const* key) {
    if (lua_type(L, -1) != LUA_TTABLE) {
        lua_pushnil(L);
        return false;
    }
    lua_pushstring(L, key);
    lua_gettable(L, -2);
    return lua_type(L, -1) == LUA_TTABLE;
}

bool anyCellVisible(Bkg::Info const& info) {
    return std::any_of(info.colors.begin(), info.colors.end(), [](osg::Vec4f const& c) { return c.w != 0.0f; });
}

// Marks the widget being drawn into a target for the clip rectangles of its
// children, and puts the previous one back when done.
class TargetWidgetScope {
public:
    explicit TargetWidgetScope(Widget* widget) : gui_(GUI::get()) {
        if (gui_) {
            previous_ = gui_->getTargetWidget();
            gui_->setTargetWidget(widget);
        }
    }
    ~TargetWidgetScope() {
        if (gui_)
            gui_->setTargetWidget(previous_);
    }
    TargetWidgetScope(TargetWidgetScope const&) = delete;
    TargetWidgetScope& operator=(TargetWidgetScope const&) = delete;

private:
    GUI* gui_;
    Widget* previous_ = nullptr;
};

}  // namespace

Skin::Skin(Widget* widget, bool createData) : widget_(widget), data_(createData ? new Data(this) : nullptr) {}

Skin::~Skin() {
    clearSkinData_();
    deleteAndClear(bkg_);
    deleteAndClear(text_);
    deleteAndClear(image_);
    deleteAndClear(spareImage_);
    deleteAndClear(focusRect_);
    deleteTarget_();
}

// ---------------------------------------------------------------- data

void Skin::setSkinData(Data* data, bool owns) {
    if (data == data_) {
        ownsData_ = owns;
        return;
    }
    clearSkinData_();
    data_ = data;
    if (data_)
        data_->setOwner(this);
    ownsData_ = owns;
    updateWidget(true);
}

void Skin::clearSkinData_() {
    if (ownsData_)
        delete data_;
    data_ = nullptr;
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
    target->updateWidget(true);
}

void Skin::setShaderEffect(ShaderEffect* effect) {
    if (shaderEffect_ && shaderEffect_ != effect)
        shaderEffect_->destroy();
    shaderEffect_ = effect;
    if (widget_)
        widget_->setDirty(Widget::DirtySelf);
}

// ---------------------------------------------------------------- sizes

osg::Vec2i Skin::getWidgetNonZoomedSize_() const {
    if (!widget_)
        return {};
    osg::Vec2i size = widget_->getSize();
    float const zoom = widget_->getZoom();
    if (zoom != 1.0f) {
        size.x = static_cast<int>(static_cast<float>(size.x) / zoom);
        size.y = static_cast<int>(static_cast<float>(size.y) / zoom);
    }
    return size;
}

osg::Vec2i Skin::calcSize() const {
    if (!data_)
        return {};
    osg::Vec2i const text = calcTextSize_(Released, 1);
    osg::Vec2i const picture = calcPictureSize_(Released, 1);
    Insets const& i = data_->getInsets();
    return {std::max(text.x, picture.x) + i.left + i.right, std::max(text.y, picture.y) + i.top + i.bottom};
}

osg::Vec2i Skin::calcBkgSize_(InteractiveState state, int inner) const {
    Bkg::Info const* info = data_ ? data_->getBkg(state, inner) : nullptr;
    if (!info)
        return {};
    return {info->insets.left + info->insets.right, info->insets.top + info->insets.bottom};
}

osg::Vec2i Skin::calcPictureSize_(InteractiveState state, int inner) const {
    Image::Info const* info = data_ ? data_->getImage(state, inner) : nullptr;
    return info ? calcImageSize_(*info) : osg::Vec2i();
}

osg::Vec2i Skin::calcImageSize_(Image::Info const& info) const {
    osg::Vec2i size;
    if (!info.file.empty()) {
        Image image;
        image.setSize(info.size);
        image.setTexture(info.file, info.rect);
        size = image.getSize();
    }
    return {size.x + std::abs(info.horzAlign.getOffset()), size.y + std::abs(info.vertAlign.getOffset())};
}

osg::Vec2i Skin::calcTextSize_(InteractiveState state, int inner) const {
    Text::Info const* info = data_ ? data_->getText(state, inner) : nullptr;
    if (!info || !widget_)
        return {};
    return calcTextSize2_(widget_->getText(), info, getWidgetNonZoomedSize_());
}

osg::Vec2i Skin::calcTextSize2_(orm::basic_string<wchar_t> const& text, Text::Info const* info,
                                osg::Vec2i const& size) const {
    if (!info || !data_)
        return {};
    Text measure;
    measure.set(*info);
    measure.setWrapping(data_->getTextWrapping());
    measure.setUseEllipsis(data_->getUseEllipsis());
    measure.setInsets(data_->getInsets());
    if (textutil::getTextHasTabs(text))
        return measure.calcSize(textutil::replaceTabsBySpaces(text), size);
    return measure.calcSize(text, size);
}

// ---------------------------------------------------------------- redraw

void Skin::redraw() { redraw_(); }

void Skin::redraw_() {
    if (data_) {
        // A skin without a widget (a tooltip's copy) paints its default look.
        auto const state = widget_ ? static_cast<InteractiveState>(widget_->getInteractiveState()) : Released;
        int const inner = widget_ ? widget_->getInnerState() : 1;
        redrawBkg_(state, inner);
        redrawText_(state, inner);
        redrawImage_(state, inner);
        redrawFocusRect_();
        updateTarget_();
    }
    textChanged_ = false;
    sizeChanged_ = false;
}

void Skin::redrawBkg_(InteractiveState state, int inner) {
    Bkg::Info const* info = data_->getBkg(state, inner);
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    // An invisible background costs nothing: it does not exist.
    if (!info || size.x < 1 || size.y < 1 || !anyCellVisible(*info)) {
        deleteAndClear(bkg_);
        return;
    }
    if (!bkg_)
        bkg_ = new Bkg();
    bkg_->set(*info);
    bkg_->setSize(size);
    bkg_->redraw();
}

void Skin::redrawText_(InteractiveState state, int inner) {
    Text::Info const* info = data_->getText(state, inner);
    if (!info || info->font.empty() || info->fontSize < 1) {
        deleteAndClear(text_);
        return;
    }
    bool const created = text_ == nullptr;
    if (created)
        text_ = new Text();
    if (created || textChanged_)
        text_->setDirty(true);
    text_->setWrapping(data_->getTextWrapping());
    text_->setUseEllipsis(data_->getUseEllipsis());
    text_->setInsets(data_->getInsets());
    if (sizeChanged_ || created)
        text_->setDirty(true);
    text_->set(*info);
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    static orm::basic_string<wchar_t> const noText;
    orm::basic_string<wchar_t> const& text = widget_ ? widget_->getText() : noText;
    if (textutil::getTextHasTabs(text))
        text_->redraw(textutil::replaceTabsBySpaces(text), size, deleteInvisibleTextLines());
    else
        text_->redraw(text, size, deleteInvisibleTextLines());
}

void Skin::putImageAside_(Image*& image) {
    if (!image)
        return;
    delete spareImage_;
    spareImage_ = image;
    image = nullptr;
}

Image* Skin::takeImage_() {
    Image* image = spareImage_ ? spareImage_ : new Image();
    spareImage_ = nullptr;
    return image;
}

void Skin::redrawImage_(InteractiveState state, int inner) { redrawImage_(image_, data_->getImage(state, inner)); }

void Skin::redrawImage_(Image*& image, Image::Info const* info) {
    if (!info) {
        putImageAside_(image);
        return;
    }
    bool sizeChanged = sizeChanged_;
    if (!image) {
        image = takeImage_();
        sizeChanged = true;
    }
    image->set(*info);
    image->setTexture(info->file, info->rect);
    if (data_)
        image->setInsets(data_->getInsets());
    if (sizeChanged)
        image->setDirty(true);
    image->redraw(getWidgetNonZoomedSize_());
}

bool Skin::getFocusRectVisible_() const { return widget_ && widget_->getFocused() && widget_->getTabOrder() > 0; }

osg::Recti Skin::getFocusRectBounds_() const {
    if (!widget_)
        return {};
    osg::Vec2i const size = widget_->getSize();
    return {0, 0, size.x, size.y};
}

void Skin::redrawFocusRect_() {
    if (!getFocusRectVisible_()) {
        deleteAndClear(focusRect_);
        return;
    }
    if (!focusRect_)
        focusRect_ = new FocusRect();
    focusRect_->setInsets(data_->getFocusRectInsets());
    focusRect_->setColor(data_->getFocusRectColor());
    focusRect_->setBounds(getFocusRectBounds_());
    focusRect_->redraw();
}

void Skin::doRedraw() {
    if (bkg_)
        bkg_->doRedraw();
    if (text_)
        text_->doRedraw();
    if (image_)
        image_->doRedraw();
    if (focusRect_)
        focusRect_->doRedraw();
    if (target_ && targetImage_)
        targetImage_->doRedraw();
    if (shaderEffect_ && widget_)
        shaderEffect_->doRedraw(widget_->getSize());
    doRedrawTarget_();
}

std::span<orm::basic_string<wchar_t> const> Skin::getTextLines() {
    if (textChanged_)
        redraw_();
    if (!text_)
        return {};
    return {text_->getTextLines().data(), text_->getTextLines().size()};
}

// ---------------------------------------------------------------- draw

void Skin::draw() {
    rastRenderer::OpacityGuard opacity(widget_ ? widget_->getOpacity() : 1.0f);
    if (!target_) {
        draw_();
    } else if (shaderEffect_) {
        shaderEffect_->setTexture(targetImage_->getTexture());
        shaderEffect_->draw();
    } else {
        targetImage_->draw();
    }
}

void Skin::draw_() {
    // The background is never clipped by the clip insets; the rest is.
    drawBkg_();
    beginClipByInsets();
    drawImage_();
    drawText_();
    drawChildren_();
    endClipByInsets();
}

void Skin::drawBkg_() {
    if (bkg_)
        bkg_->draw();
}

void Skin::drawText_() {
    if (text_)
        text_->draw();
}

void Skin::drawImage_() {
    if (image_)
        image_->draw();
}

void Skin::drawChildren_() {
    if (widget_)
        widget_->drawChildren();
}

void Skin::drawFocusRect() {
    if (focusRect_)
        focusRect_->draw();
}

void Skin::make(GraphicCommands* commands) {
    if (!commands)
        return;
    GraphicCommandOpacityGuard opacity(*commands, widget_ ? widget_->getOpacity() : 1.0f);
    if (!target_) {
        make_(commands);
        return;
    }
    if (!targetCommands_)
        targetCommands_ = std::make_unique<GraphicCommands>();
    // The previous frame's nested commands belong to the command that took
    // them; forgetting them here only keeps the list's storage.
    targetCommands_->clear();
    {
        TargetWidgetScope scope(widget_);
        make_(targetCommands_.get());
    }
    commands->drawToTarget(target_, getWidgetNonZoomedSize_(), targetCommands_->getCommands());
    if (shaderEffect_) {
        shaderEffect_->setTexture(targetImage_->getTexture());
        shaderEffect_->make(commands);
    } else {
        targetImage_->make(commands);
    }
}

void Skin::make_(GraphicCommands* commands) {
    makeBkg_(commands);
    makeBeginClipByInsets(commands);
    makeImage_(commands);
    makeText_(commands);
    makeChildren_(commands);
    makeEndClipByInsets(commands);
}

void Skin::makeBkg_(GraphicCommands* commands) {
    if (bkg_)
        bkg_->make(commands);
}

void Skin::makeText_(GraphicCommands* commands) {
    if (text_)
        text_->make(commands);
}

void Skin::makeImage_(GraphicCommands* commands) {
    if (image_)
        image_->make(commands);
}

void Skin::makeChildren_(GraphicCommands* commands) {
    if (widget_)
        widget_->makeChildren(commands);
}

void Skin::makeFocusRect(GraphicCommands* commands) {
    if (focusRect_ && commands)
        focusRect_->make(commands);
}

namespace {

// The rectangle inside the clip insets, in target pixels.
osg::Recti clipRectByInsets(Widget const& widget, Insets const& clip) {
    GUI const* gui = GUI::get();
    osg::Vec2i p = widget.widgetToScreen(osg::Vec2i(clip.left, clip.top));
    osg::Vec2f f(1.0f, 1.0f);
    if (gui) {
        // Inside a render target, positions count from the target's widget.
        if (Widget const* target = gui->getTargetWidget())
            p -= target->widgetToScreen(osg::Vec2i(0, 0));
        else
            p += gui->getViewportPosition();
        f = gui->getOffscreenScaleFactor();
    }
    osg::Vec2i const size = widget.getSize();
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

// ---------------------------------------------------------------- render target

void Skin::setTargetMips(int mips) {
    if (mips == targetMips_)
        return;
    targetMips_ = mips;
    if (widget_)
        widget_->setDirty(Widget::DirtySelf);
}

void Skin::setTargetMsaa(int msaa) {
    if (msaa == targetMsaa_)
        return;
    targetMsaa_ = msaa;
    if (widget_)
        widget_->setDirty(Widget::DirtySelf);
}

void Skin::setTargetSize(osg::Vec2i const& size) {
    if (size == targetSize_)
        return;
    targetSize_ = size;
    if (widget_)
        widget_->setDirty(Widget::DirtySelf);
}

osg::Vec2i Skin::getTargetSize() const { return target_ ? target_->getSize() : targetSize_; }

void Skin::deleteTarget_() {
    // The picture shows the target's texture: it goes first.
    targetImage_.reset();
    target_.reset();
}

void Skin::updateTarget_() {
    if (!widget_ || !widget_->getDrawToTarget()) {
        deleteTarget_();
        return;
    }
    if (target_) {
        osg::Vec2i const wanted =
            targetSize_.x >= 1 && targetSize_.y >= 1 ? targetSize_ : getWidgetNonZoomedSize_();
        if (target_->getSize() != wanted || target_->getMsaa() != targetMsaa_ ||
            target_->getMips() != (targetMips_ > 1))
            deleteTarget_();
    }
    if (!target_) {
        createTarget_();
    } else if (targetImage_->getViewSize() != widget_->getSize()) {
        // Same target, other zoom: the picture stretches over the new size.
        targetImage_->setDirty(true);
        targetImage_->redraw(widget_->getSize());
    }
}

void Skin::createTarget_() {
    rastRenderer* renderer = rastRenderer::get();
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    if (!renderer || !widget_ || size.x <= 0 || size.y <= 0)
        return;
    osg::Vec2i const frameSize = targetSize_.x > 0 && targetSize_.y > 0 ? targetSize_ : size;
    target_ = renderer->createFrameBuffer(frameSize, targetMsaa_, targetMips_ > 1);
    targetImage_ = std::make_shared<Image>();
    Image::Info info;
    info.size = size;
    info.horzAlign = Align(Align::Stretch);
    info.vertAlign = Align(Align::Stretch);
    info.userTexSampler = 0;
    targetImage_->set(info);
    // The frame buffer owns its texture; the picture only shows it.
    targetImage_->setTexture(target_->getTexture(), false);
    targetImage_->redraw(widget_->getSize());
    targetIsNew_ = true;
}

void Skin::doRedrawTarget_() {
    if (!target_ || !widget_)
        return;
    TargetWidgetScope scope(widget_);
    float const zoom = widget_->getZoom();
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    osg::Recti damage;
    bool const whole = widget_->takeTargetDamage(damage) || targetIsNew_;
    targetIsNew_ = false;
    if (zoom == 1.0f) {
        widget_->doRedrawChildren();
        if (whole)
            drawToTarget_(size);
        else
            drawPartToTarget_(size, damage);
        return;
    }
    // The children are laid out and drawn at the non-zoomed size; the
    // target's picture is then stretched over the zoomed one.
    osg::Vec2i const remembered = widget_->getSize();
    widget_->setZoom(1.0f);
    widget_->setSize(size);
    widget_->setZoom(zoom);
    widget_->redrawChildren();
    widget_->doRedrawChildren();
    drawToTarget_(size);
    widget_->setSize(remembered);
}

void Skin::drawPartToTarget_(osg::Vec2i const& size, osg::Recti const& damage) {
    rastRenderer* renderer = rastRenderer::get();
    osg::Recti const part = damage.intersect(osg::Recti(0, 0, size.x, size.y));
    if (!target_ || part.isEmpty())
        return;
    if (!renderer->canKeepTargets()) {
        drawToTarget_(size);
        return;
    }
    // Two words of capture keep std::function from allocating.
    target_->renderTo(
        [this, &part] {
            rastRenderer* renderer = rastRenderer::get();
            osg::Vec2i const& frame = target_->getSize();
            rastRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0.0f, static_cast<float>(frame.x), static_cast<float>(frame.y), 0.0f);
            rastRenderer::ModelViewMatrixGuard modelView;
            modelView.setIdentity();
            // Only the stale part is cleared and drawn; children outside it are skipped.
            rastRenderer::ClipRectGuard clip(part);
            renderer->clear(osg::Vec4f(0, 0, 0, 0));
            rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueToTarget);
            renderer->getShader()->turnOnDrawQuads();
            draw_();
        },
        true);
}

void Skin::drawToTarget_(osg::Vec2i const& size) {
    if (!target_)
        return;
    target_->renderTo([this, size] {
        osg::Vec2i const& frame = target_->getSize();
        rastRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0.0f, static_cast<float>(frame.x), static_cast<float>(frame.y), 0.0f);
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setIdentity();
        rastRenderer::ClipRectGuard clip(osg::Recti(0, 0, size.x, size.y));
        rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueToTarget);
        rastRenderer::get()->getShader()->turnOnDrawQuads();
        draw_();
    });
}

// ---------------------------------------------------------------- Lua

void Skin::load(orm::basic_string<char> const& name) {
    if (GUI* gui = GUI::get())
        gui->loadSkin(name, *this);
}

void Skin::loadFromScript(lua_State* L) {
    loadSkin_(L);
    updateWidget(true);
}

void Skin::putIntoScript(lua_State* L) const { unloadSkin_(L); }

void Skin::loadSkin_(lua_State* L) {
    if (!L || lua_type(L, -1) != LUA_TTABLE)
        return;
    luautil::StackGuard guard(L);
    bool const hasData = pushTableField(L, "skinData");
    if (!hasData)
        return;
    loadSkinData_(L);
    lua_pop(L, 1);
    if (pushTableField(L, "skins"))
        loadSubSkins_(L);
}

void Skin::loadSkinData_(lua_State* L) {
    if (!data_)
        return;
    data_->loadParams(L);
    data_->loadStates(L);
    data_->setLoaded();
}

void Skin::loadSubSkin_(lua_State* L, char const* name, Data& data) {
    luautil::StackGuard guard(L);
    if (!pushTableField(L, name) || !pushTableField(L, "skinData"))
        return;
    data.loadParams(L);
    data.loadStates(L);
    data.setLoaded();
}

void Skin::loadSubSkin_(lua_State* L, char const* name, Skin* skin) {
    luautil::StackGuard guard(L);
    if (skin && pushTableField(L, name))
        skin->loadFromScript(L);
}

void Skin::unloadSkin_(lua_State* L) const {
    if (!L || lua_type(L, -1) != LUA_TTABLE)
        return;
    lua_createtable(L, 0, 2);
    unloadSkinData_(L);
    lua_setfield(L, -2, "skinData");
    lua_createtable(L, 0, 0);
    unloadSubSkins_(L);
    lua_setfield(L, -2, "skins");
}

void Skin::unloadSkinData_(lua_State* L) const {
    if (!data_)
        return;
    data_->unloadParams(L);
    data_->unloadStates(L);
}

void Skin::unloadSubSkin_(lua_State* L, char const* name, Data const& data) const {
    lua_createtable(L, 0, 1);
    lua_createtable(L, 0, 2);
    data.unloadParams(L);
    data.unloadStates(L);
    lua_setfield(L, -2, "skinData");
    lua_setfield(L, -2, name);
}

void Skin::unloadSubSkin_(lua_State* L, char const* name, Skin const* skin) const {
    if (!skin)
        return;
    lua_createtable(L, 0, 2);
    skin->putIntoScript(L);
    lua_setfield(L, -2, name);
}

}  // namespace gui::skin
