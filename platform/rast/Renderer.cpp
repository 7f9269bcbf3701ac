#include "rast/Renderer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "rast/Font.h"
#include "rast/FrameBuffer.h"
#include "rast/Geometry.h"
#include "rast/Shader.h"
#include "rast/Texture.h"

namespace {
rastRenderer* g_renderer = nullptr;
}

rastRenderer* rastRenderer::create(std::unique_ptr<rastBackend> backend) {
    if (!g_renderer && backend)
        g_renderer = new rastRenderer(std::move(backend));
    return g_renderer;
}

void rastRenderer::destroy() {
    delete g_renderer;
    g_renderer = nullptr;
}

rastRenderer* rastRenderer::get() { return g_renderer; }

rastRenderer::rastRenderer(std::unique_ptr<rastBackend> backend)
    : backend_(std::move(backend)),
      shader_(std::make_unique<rastShader>()),
      textureManager_(std::make_unique<rastTextureManager>()),
      fontManager_(std::make_unique<rastFontManager>()) {
    // Stacks rarely go deeper than the widget tree; reserving keeps the first frames from allocating.
    viewportStack_.reserve(8);
    projectionStack_.reserve(8);
    modelViewStack_.reserve(64);
    clipStack_.reserve(64);
    techniqueStack_.reserve(8);
    targetStack_.reserve(4);
}

rastRenderer::~rastRenderer() {
    // Fonts and textures give their GPU objects back through the backend, so they go first.
    fontManager_.reset();
    textureManager_.reset();
    // Pointers into this renderer are invalid from here on.
    if (g_renderer == this)
        g_renderer = nullptr;
}

std::unique_ptr<rastGeometry> rastRenderer::createGeometry(orm::vector<rastVertex> const& vertices,
                                                           orm::vector<int> const& indices) {
    return std::unique_ptr<rastGeometry>(new rastGeometry(vertices, indices));
}

std::shared_ptr<rastFrameBuffer> rastRenderer::createFrameBuffer(osg::Vec2i const& size, int msaa, bool mips) {
    return std::shared_ptr<rastFrameBuffer>(new rastFrameBuffer(size, msaa, mips));
}

void rastRenderer::pushViewport(osg::Recti const& rect) {
    viewportStack_.push_back(viewport_);
    viewport_ = rect;
    backend_->setViewport(viewport_);
}

void rastRenderer::popViewport() {
    if (viewportStack_.empty())
        return;
    viewport_ = viewportStack_.back();
    viewportStack_.pop_back();
    backend_->setViewport(viewport_);
}

void rastRenderer::setProjectionMatrix(osg::Matrixf const& m) {
    projection_ = m;
    backend_->setProjectionMatrix(projection_);
}

void rastRenderer::pushProjectionMatrix() { projectionStack_.push_back(projection_); }

void rastRenderer::popProjectionMatrix() {
    if (projectionStack_.empty())
        return;
    projection_ = projectionStack_.back();
    projectionStack_.pop_back();
    backend_->setProjectionMatrix(projection_);
}

void rastRenderer::setModelViewMatrix(osg::Matrixf const& m) {
    modelView_ = m;
    backend_->setModelViewMatrix(modelView_);
}

void rastRenderer::pushModelViewMatrix() { modelViewStack_.push_back(modelView_); }

void rastRenderer::popModelViewMatrix() {
    if (modelViewStack_.empty())
        return;
    bool const changed = !(modelViewStack_.back() == modelView_);
    modelView_ = modelViewStack_.back();
    modelViewStack_.pop_back();
    if (changed)
        backend_->setModelViewMatrix(modelView_);
}

// A rectangle in units as a rectangle in target pixels, as positions are
// scaled: outwards to whole pixels, within the range of int.
osg::Recti rastRenderer::toPixels_(osg::Recti const& rect) const {
    if (scale_ == 1.0f)
        return rect;
    auto scaled = [this](int v, bool up) {
        double const p = up ? std::ceil(double(v) * scale_) : std::floor(double(v) * scale_);
        return static_cast<int>(std::clamp(p, double(std::numeric_limits<int>::min()),
                                           double(std::numeric_limits<int>::max())));
    };
    return {scaled(rect.min.x, false), scaled(rect.min.y, false), scaled(rect.max.x, true), scaled(rect.max.y, true)};
}

void rastRenderer::pushClipRect(osg::Recti const& rect) {
    osg::Recti effective = toPixels_(rect);
    if (clipStack_.size() > clipBase_)
        effective = effective.intersect(clipStack_.back());
    // An empty cut stays a valid, empty scissor rather than an inverted one.
    if (effective.max.x < effective.min.x)
        effective.max.x = effective.min.x;
    if (effective.max.y < effective.min.y)
        effective.max.y = effective.min.y;
    clipStack_.push_back(effective);
    backend_->pushClipRect(effective);
}

bool rastRenderer::isClippedAway(osg::Recti const& rect) const {
    if (clipStack_.size() <= clipBase_)
        return false;
    float const* m = modelView_.ptr();
    bool const translation = m[0] == 1.0f && m[1] == 0.0f && m[4] == 0.0f && m[5] == 1.0f && m[3] == 0.0f &&
                             m[7] == 0.0f && m[15] == 1.0f;
    if (!translation)
        return false;
    // The translation is in pixels already (the guards scale it); outwards
    // to whole pixels, as the clip itself is rounded.
    osg::Vec2i const low(static_cast<int>(std::floor(m[12])), static_cast<int>(std::floor(m[13])));
    osg::Vec2i const high(static_cast<int>(std::ceil(m[12])), static_cast<int>(std::ceil(m[13])));
    osg::Recti const pixels = toPixels_(rect);
    osg::Recti const placed(pixels.min + low, pixels.max + high);
    return placed.intersect(clipStack_.back()).isEmpty();
}

void rastRenderer::popClipRect() {
    if (clipStack_.size() <= clipBase_)
        return;
    clipStack_.pop_back();
    backend_->popClipRect(clipStack_.size() > clipBase_ ? &clipStack_.back() : nullptr);
}

void rastRenderer::drawGeometry(int primitive, int count, int first) {
    rastDrawState state = makeDrawState(0, false);
    if (shader_->getTexture())
        state.texture = shader_->getTexture()->getId();
    backend_->drawGeometry(state, geometry_ ? geometry_->getId() : 0, primitive, count, first);
}

void rastRenderer::pushTechnique(int type) {
    techniqueStack_.push_back(technique_);
    technique_ = type;
}

void rastRenderer::popTechnique() {
    if (techniqueStack_.empty())
        return;
    technique_ = techniqueStack_.back();
    techniqueStack_.pop_back();
}

void rastRenderer::endRedraw() {
    // Glyphs asked for while strings were laid out must be on the GPU before they are drawn.
    fontManager_->doRedraw();
    backend_->endRedraw();
}

void rastRenderer::endFrame() { backend_->endFrame(); }

int rastRenderer::getStackDepth() const {
    return static_cast<int>(viewportStack_.size() + projectionStack_.size() + modelViewStack_.size() +
                            clipStack_.size() + techniqueStack_.size() + targetStack_.size());
}

void rastRenderer::beginRenderTo(rastFrameBuffer& target, bool keepContents) {
    targetStack_.push_back(SavedTarget{boundFrameBuffer_, viewport_, projection_, modelView_, technique_,
                                       viewportStack_.size(), projectionStack_.size(), modelViewStack_.size(),
                                       clipStack_.size(), techniqueStack_.size()});
    boundFrameBuffer_ = target.getId();
    if (keepContents && backend_->canKeepFrameBuffer())
        backend_->bindFrameBufferKeeping(boundFrameBuffer_);
    else
        backend_->bindFrameBuffer(boundFrameBuffer_);
    // Clips of the outer target do not apply inside this one. Only a clip in
    // force is switched off, so that endRenderTo's re-push balances it.
    if (clipStack_.size() > clipBase_)
        backend_->popClipRect(nullptr);
    clipBase_ = clipStack_.size();
    viewport_ = osg::Recti(0, 0, target.getSize().x, target.getSize().y);
    backend_->setViewport(viewport_);
}

void rastRenderer::endRenderTo() {
    if (targetStack_.empty())
        return;
    SavedTarget const saved = targetStack_.back();
    targetStack_.pop_back();
    // Whatever the drawing left unbalanced is dropped here.
    viewportStack_.resize(saved.viewportDepth);
    projectionStack_.resize(saved.projectionDepth);
    modelViewStack_.resize(saved.modelViewDepth);
    clipStack_.resize(saved.clipDepth);
    techniqueStack_.resize(saved.techniqueDepth);
    clipBase_ = targetStack_.empty() ? 0 : targetStack_.back().clipDepth;

    boundFrameBuffer_ = saved.frameBuffer;
    backend_->bindFrameBuffer(boundFrameBuffer_);
    viewport_ = saved.viewport;
    backend_->setViewport(viewport_);
    projection_ = saved.projection;
    backend_->setProjectionMatrix(projection_);
    modelView_ = saved.modelView;
    backend_->setModelViewMatrix(modelView_);
    technique_ = saved.technique;
    if (clipStack_.size() > clipBase_)
        backend_->pushClipRect(clipStack_.back());
}

rastDrawState rastRenderer::makeDrawState(rastTextureId texture, bool isArray) const {
    rastDrawState s;
    s.texture = texture;
    s.textureIsArray = isArray;
    s.sampler = shader_->getUserTextureFiltering() >= 0 ? shader_->getUserTextureFiltering() : textureFiltering_;
    s.technique = technique_;
    s.program = shader_->getProgram();
    s.scale = scale_;
    s.opacity = opacity_;
    s.gamma = shader_->getGamma();
    s.intensity = shader_->getIntensity();
    s.shift = shader_->getPositionShift();
    s.color = shader_->getColor();
    return s;
}

rastRenderer::ModelViewMatrixGuard::ModelViewMatrixGuard() {
    get()->pushModelViewMatrix();
    matrix_ = get()->getModelViewMatrix();
}

rastRenderer::ModelViewMatrixGuard::~ModelViewMatrixGuard() { get()->popModelViewMatrix(); }

rastRenderer::ModelViewMatrixGuard& rastRenderer::ModelViewMatrixGuard::makeIdentity() {
    matrix_.makeIdentity();
    return *this;
}

rastRenderer::ModelViewMatrixGuard& rastRenderer::ModelViewMatrixGuard::makeTranslate(float x, float y, float z) {
    float const s = get()->getScale();
    // Every widget translates: after an affine matrix that is three additions
    // to its translation, the same values the full product gives.
    if (matrix_(3, 0) == 0.0f && matrix_(3, 1) == 0.0f && matrix_(3, 2) == 0.0f && matrix_(3, 3) == 1.0f) {
        matrix_(0, 3) += x * s;
        matrix_(1, 3) += y * s;
        matrix_(2, 3) += z * s;
    } else {
        matrix_.postMult(osg::Matrixf::translate(x * s, y * s, z * s));
    }
    return *this;
}

rastRenderer::ModelViewMatrixGuard& rastRenderer::ModelViewMatrixGuard::makeRotate(float angle, float x, float y,
                                                                                   float z) {
    osg::Quat const q = osg::Quat::fromAxisAngle(angle, x, y, z);
    if (!q.isIdentity())
        matrix_.postMult(osg::Matrixf::rotate(q));
    return *this;
}

rastRenderer::ModelViewMatrixGuard& rastRenderer::ModelViewMatrixGuard::apply() {
    get()->setModelViewMatrix(matrix_);
    return *this;
}

rastRenderer::ProjectionMatrixGuard& rastRenderer::ProjectionMatrixGuard::makeOrtho2D(float left, float right,
                                                                                     float bottom, float top) {
    float const s = get()->getScale();
    get()->setProjectionMatrix(osg::Matrixf::ortho(left * s, right * s, bottom * s, top * s, -1.0f, 1.0f));
    return *this;
}

rastRenderer::ShiftPositionGuard::ShiftPositionGuard(float x, float y) : x_(x), y_(y) {
    get()->getShader()->shiftPosition(x, y);
}

rastRenderer::ShiftPositionGuard::~ShiftPositionGuard() { get()->getShader()->shiftPosition(-x_, -y_); }
