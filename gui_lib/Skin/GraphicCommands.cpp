#include "Skin/GraphicCommands.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

#include "orm/Log.h"
#include "rast/FrameBuffer.h"
#include "rast/Shader.h"

namespace gui {

namespace {

// Pool and registry lists grow by half their size, not double: they reach the
// high-water mark of a frame and stay there.
template <class T>
void appendGrowing(orm::vector<T>& list, T value) {
    if (list.size() == list.capacity())
        list.reserve(std::max<size_t>(8, list.capacity() + list.capacity() / 2));
    list.push_back(value);
}

// Last in, first out; a new object only when none is free.
template <class T>
T* takeFrom(GraphicCommandPool<T>& pool) {
    if (pool.free.empty()) {
        T* object = new T();
        appendGrowing(pool.all, object);
        return object;
    }
    T* object = pool.free.back();
    pool.free.pop_back();
    return object;
}

struct CommandRegistry {
    orm::vector<GraphicCommand*> commands;
    int32_t lastId = 0;
};

// Process-wide lists are made once and never destroyed: the commands they
// point to live until the process ends, and stay reachable for leak checkers.
CommandRegistry& registry() {
    static CommandRegistry* r = new CommandRegistry();
    return *r;
}

GraphicCommandPool<rastTextString>& textStringPool() {
    static auto* p = new GraphicCommandPool<rastTextString>();
    return *p;
}

float g_currentOpacity = 1.0f;
float g_currentScale = 1.0f;

rastRenderer& renderer() { return *rastRenderer::get(); }
rastShader& shader() { return *rastRenderer::get()->getShader(); }

// Takes a command of type C from its pool, fills it and appends it to `list`.
template <class C, class... Args>
C* record(orm::vector<GraphicCommand*>& list, Args&&... args) {
    C* command = C::take();
    command->set(std::forward<Args>(args)...);
    list.push_back(command);
    return command;
}

}  // namespace

// ---------------------------------------------------------------------------
// Base and pools

GraphicCommand::GraphicCommand() : id(++registry().lastId) { appendGrowing(registry().commands, this); }

GraphicCommand::~GraphicCommand() = default;

orm::vector<GraphicCommand*> const& GraphicCommand::getRegistry() { return registry().commands; }

template <class T>
GraphicCommandPool<T>& SimpleGraphicCommand<T>::pool() {
    // See registry(): never destroyed on purpose.
    static auto* p = new GraphicCommandPool<T>();
    return *p;
}

template <class T>
T* SimpleGraphicCommand<T>::take() {
    return takeFrom(pool());
}

template <class T>
void SimpleGraphicCommand<T>::release() {
    appendGrowing(pool().free, static_cast<T*>(this));
}

template <class T>
void SimpleGraphicCommand<T>::stat() {
    // Copies, so that logging cannot disturb a pool in use.
    orm::vector<T*> const all = pool().all;
    orm::vector<T*> const free = pool().free;
    orm_vlogf("VUREL", 64, "~~~ %-40s  all:%d free:%d", typeid(T).name(), static_cast<int>(all.size()),
              static_cast<int>(free.size()));
}

rastTextString* GraphicCommandTextStringPool::take() { return takeFrom(textStringPool()); }

void GraphicCommandTextStringPool::giveBack(rastTextString* string) {
    if (string)
        appendGrowing(textStringPool().free, string);
}

int GraphicCommandTextStringPool::getAllCount() { return static_cast<int>(textStringPool().all.size()); }

int GraphicCommandTextStringPool::getFreeCount() { return static_cast<int>(textStringPool().free.size()); }

// ---------------------------------------------------------------------------
// Matrices

namespace {

// Most guards need one or two steps; room for a few keeps reused commands from
// growing when they change roles between frames.
constexpr size_t kReservedOps = 4;

}  // namespace

GraphicCommandProjectionMatrix::GraphicCommandProjectionMatrix() { ops.reserve(kReservedOps); }

void GraphicCommandProjectionMatrix::set(orm::vector<GraphicCommandMatrixOp> const& list) {
    ops.assign(list.begin(), list.end());
}

void GraphicCommandProjectionMatrix::addOp(int32_t kind, float a, float b, float c, float d) {
    ops.push_back({kind, a, b, c, d});
}

void GraphicCommandProjectionMatrix::draw() {
    rastRenderer& r = renderer();
    for (GraphicCommandMatrixOp const& op : ops) {
        switch (op.kind) {
        case Ortho2D: {
            float const s = r.getScale();
            r.setProjectionMatrix(osg::Matrixf::ortho(op.a * s, op.b * s, op.c * s, op.d * s, -1.0f, 1.0f));
            break;
        }
        case Push:
            r.pushProjectionMatrix();
            break;
        case Pop:
            r.popProjectionMatrix();
            break;
        default:
            break;
        }
    }
}

void GraphicCommandProjectionMatrix::release() {
    ops.clear();
    SimpleGraphicCommand::release();
}

GraphicCommandModelViewMatrix::GraphicCommandModelViewMatrix() { ops.reserve(kReservedOps); }

void GraphicCommandModelViewMatrix::set(orm::vector<GraphicCommandMatrixOp> const& list) {
    ops.assign(list.begin(), list.end());
}

void GraphicCommandModelViewMatrix::addOp(int32_t kind, float a, float b, float c, float d) {
    ops.push_back({kind, a, b, c, d});
}

void GraphicCommandModelViewMatrix::draw() {
    rastRenderer& r = renderer();
    float const s = r.getScale();
    osg::Matrixf m = r.getModelViewMatrix();
    for (GraphicCommandMatrixOp const& op : ops) {
        switch (op.kind) {
        case SetIdentity:
        case MakeIdentity:
            m.makeIdentity();
            break;
        case SetTranslate:
        case MakeTranslate:
            m.postMult(osg::Matrixf::translate(op.a * s, op.b * s, op.c * s));
            break;
        case SetRotate:
        case MakeRotate: {
            osg::Quat const q = osg::Quat::fromAxisAngle(op.d, op.a, op.b, op.c);
            if (!q.isIdentity())
                m.postMult(osg::Matrixf::rotate(q));
            break;
        }
        case Push:
            r.pushModelViewMatrix();
            break;
        case Pop:
            r.popModelViewMatrix();
            break;
        default:
            break;
        }
        if (op.kind == SetIdentity || op.kind == SetTranslate || op.kind == SetRotate)
            r.setModelViewMatrix(m);
    }
}

void GraphicCommandModelViewMatrix::release() {
    ops.clear();
    SimpleGraphicCommand::release();
}

void GraphicCommandSetModelViewMatrix::draw() { renderer().setModelViewMatrix(matrix); }

void GraphicCommandPreMultModelViewMatrix::draw() {
    rastRenderer& r = renderer();
    r.setModelViewMatrix(matrix * r.getModelViewMatrix());
}

// ---------------------------------------------------------------------------
// Renderer state

void GraphicCommandPushShaderTechnique::draw() { renderer().pushTechnique(type); }

void GraphicCommandPopShaderTechnique::draw() { renderer().popTechnique(); }

void GraphicCommandSetShaderTechnique::draw() {
    rastRenderer& r = renderer();
    if (r.getTechnique() != rastRenderer::TechniqueNone)
        r.resetTechnique();
    if (type != rastRenderer::TechniqueNone)
        r.setTechnique(type);
}

void GraphicCommandSetTextureFiltering::draw() { renderer().setTextureFiltering(sampler); }

void GraphicCommandPushClipRect::draw() { renderer().pushClipRect(rect); }

void GraphicCommandPopClipRect::draw() { renderer().popClipRect(); }

void GraphicCommandPushViewport::draw() { renderer().pushViewport(rect); }

void GraphicCommandPopViewport::draw() { renderer().popViewport(); }

void GraphicCommandSetOpacity::draw() { renderer().setOpacity(opacity); }

void GraphicCommandSetScale::draw() { renderer().setScale(scale); }

void GraphicCommandShiftPosition::draw() { shader().shiftPosition(x, y); }

// ---------------------------------------------------------------------------
// Drawing

void GraphicCommandDrawBkg::set(rastShaderBkgQuads const& bkgQuads, float const* rgba) {
    quads = bkgQuads;
    if (rgba)
        std::copy(rgba, rgba + colorCount, colors);
    else
        std::fill(colors, colors + colorCount, 1.0f);
}

void GraphicCommandDrawBkg::draw() {
    if (quads.getCount() < 1)
        return;
    rastShader& s = shader();
    s.turnOnDrawQuads();
    s.setColors(colors, quads.getCount());
    quads.draw(s);
}

void GraphicCommandDrawQuads::set(rastShaderQuads const& shaderQuads, osg::Vec4f const& quadColor,
                                  int textureSampler, int batchIndex) {
    quads = shaderQuads;
    color = quadColor;
    sampler = textureSampler;
    batch = batchIndex;
}

void GraphicCommandDrawQuads::draw() {
    rastShader& s = shader();
    s.setColor(color);
    s.turnOnDrawQuads();
    if (sampler >= rastRenderer::SamplerLinear && sampler <= rastRenderer::SamplerMipmap)
        s.setUserTextureFiltering(sampler);
    // -1 (all bits set) stands for the whole list.
    if (static_cast<uint32_t>(batch) < 0xFFFFFFFFu)
        quads.drawBatch(s, batch);
    else
        quads.draw(s);
    if (sampler > 0)
        s.resetTextureSampler();
}

namespace {

// Gives the copies back last first, for the same reason as in
// GraphicCommandDrawToTarget::release.
void giveBackStrings(orm::vector<rastTextString*>& strings) {
    for (auto it = strings.rbegin(); it != strings.rend(); ++it)
        GraphicCommandTextStringPool::giveBack(*it);
    strings.clear();
}

void addStringCopy(orm::vector<rastTextString*>& strings, rastTextString const& string) {
    // Assignment reuses the pooled string's buffers.
    rastTextString* copy = GraphicCommandTextStringPool::take();
    *copy = string;
    strings.push_back(copy);
}

}  // namespace

GraphicCommandDrawText::GraphicCommandDrawText() { strings.reserve(4); }

void GraphicCommandDrawText::set(rastTextString const* string, osg::Vec4f const* textColor) {
    giveBackStrings(strings);
    hasColor = textColor != nullptr;
    if (textColor)
        color = *textColor;
    if (string)
        addStringCopy(strings, *string);
}

void GraphicCommandDrawText::set(orm::vector<rastTextString*> const& list, osg::Vec4f const* textColor) {
    set(nullptr, textColor);
    for (rastTextString const* string : list)
        if (string)
            addStringCopy(strings, *string);
}

void GraphicCommandDrawText::draw() {
    rastShader& s = shader();
    s.turnOnDrawQuads();
    for (rastTextString const* string : strings) {
        if (hasColor)
            string->draw(s, color);
        else
            string->draw(s);
    }
}

void GraphicCommandDrawText::release() {
    giveBackStrings(strings);
    SimpleGraphicCommand::release();
}

GraphicCommandDrawGeometry::GraphicCommandDrawGeometry() = default;

GraphicCommandDrawGeometry::~GraphicCommandDrawGeometry() = default;

void GraphicCommandDrawGeometry::set(orm::vector<rastVertex> const& vertexList, orm::vector<int> const& indexList,
                                     int primitiveType, int primitiveCount, rastTexture const* geometryTexture) {
    vertices = vertexList;
    indices = indexList;
    primitive = primitiveType;
    count = primitiveCount;
    texture = geometryTexture;
}

void GraphicCommandDrawGeometry::doRedraw() {
    if (!geometry)
        geometry = renderer().createGeometry(vertices, indices);
    else
        geometry->update(vertices, indices);
}

void GraphicCommandDrawGeometry::draw() {
    rastRenderer& r = renderer();
    rastShader& s = *r.getShader();
    s.turnOffDrawQuads();
    s.setTexture(texture);
    s.setTextureArray(nullptr);
    r.setGeometry(geometry.get());
    r.drawGeometry(primitive, count, 0);
}

void GraphicCommandDrawFunc::set(std::function<void()> drawFn, osg::Vec2i const& drawSize,
                                 std::function<void(osg::Vec2i const&)> redrawFn) {
    drawFunc = std::move(drawFn);
    size = drawSize;
    redrawFunc = std::move(redrawFn);
}

void GraphicCommandDrawFunc::doRedraw() {
    if (redrawFunc)
        redrawFunc(size);
}

void GraphicCommandDrawFunc::draw() {
    if (drawFunc)
        drawFunc();
}

GraphicCommandDrawToTarget::GraphicCommandDrawToTarget() = default;

GraphicCommandDrawToTarget::~GraphicCommandDrawToTarget() = default;

void GraphicCommandDrawToTarget::set(std::shared_ptr<rastFrameBuffer> frameBuffer, osg::Vec2i const& drawSize,
                                     orm::vector<GraphicCommand*> const& list) {
    target = std::move(frameBuffer);
    size = drawSize;
    commands.assign(list.begin(), list.end());
}

namespace {

// The nested list drawn into the bound target: a fresh projection over the
// target, identity model-view, a clip to the command's size.
void drawNested(GraphicCommandDrawToTarget const& command) {
    osg::Vec2i const& targetSize = command.target->getSize();
    rastRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, static_cast<float>(targetSize.x), static_cast<float>(targetSize.y), 0.0f);
    rastRenderer::ModelViewMatrixGuard modelView;
    modelView.setIdentity();
    rastRenderer::ClipRectGuard clip(osg::Recti(0, 0, command.size.x, command.size.y));
    rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueToTarget);
    shader().turnOnDrawQuads();
    for (GraphicCommand* nested : command.commands)
        nested->draw();
}

}  // namespace

void GraphicCommandDrawToTarget::doRedraw() {
    for (GraphicCommand* command : commands)
        command->doRedraw();
    if (target)
        target->renderTo([this] { drawNested(*this); });
}

void GraphicCommandDrawToTarget::release() {
    // The nested commands were taken before this one; giving them back after
    // it, last first, keeps a reverse release of the whole list exactly
    // mirroring the order of taking.
    SimpleGraphicCommand::release();
    for (auto it = commands.rbegin(); it != commands.rend(); ++it)
        (*it)->release();
    commands.clear();
    target.reset();
}

void GraphicCommandParse::draw() {
    if (func)
        func();
}

// ---------------------------------------------------------------------------
// The list

GraphicCommands::GraphicCommands() = default;

GraphicCommands::~GraphicCommands() = default;

void GraphicCommands::setProjectionMatrix(osg::Matrixf const&) {}

void GraphicCommands::setModelViewMatrix(osg::Matrixf const& m) {
    record<GraphicCommandSetModelViewMatrix>(commands, m);
}

void GraphicCommands::preMultModelViewMatrix(osg::Matrixf const& m) {
    record<GraphicCommandPreMultModelViewMatrix>(commands, m);
}

void GraphicCommands::pushClipRect(osg::Recti const& rect) { record<GraphicCommandPushClipRect>(commands, rect); }

void GraphicCommands::popClipRect() { record<GraphicCommandPopClipRect>(commands); }

void GraphicCommands::pushViewport(osg::Recti const& rect) { record<GraphicCommandPushViewport>(commands, rect); }

void GraphicCommands::popViewport() { record<GraphicCommandPopViewport>(commands); }

void GraphicCommands::setOpacity(float opacity) {
    record<GraphicCommandSetOpacity>(commands, opacity);
    g_currentOpacity = opacity;
}

void GraphicCommands::setScale(float scale) {
    record<GraphicCommandSetScale>(commands, scale);
    g_currentScale = scale;
}

void GraphicCommands::shiftPosition(float x, float y) { record<GraphicCommandShiftPosition>(commands, x, y); }

void GraphicCommands::drawBkg(rastShaderBkgQuads const& quads, float const* colors) {
    record<GraphicCommandDrawBkg>(commands, quads, colors);
}

void GraphicCommands::drawQuads(rastShaderQuads const& quads, osg::Vec4f const& color, int sampler, int batch) {
    record<GraphicCommandDrawQuads>(commands, quads, color, sampler, batch);
}

void GraphicCommands::drawText(rastTextString* string, osg::Vec4f const* color) {
    record<GraphicCommandDrawText>(commands, static_cast<rastTextString const*>(string), color);
}

void GraphicCommands::drawText(orm::vector<rastTextString*> const& strings, osg::Vec4f const* color) {
    record<GraphicCommandDrawText>(commands, strings, color);
}

void GraphicCommands::drawFunc(std::function<void()> draw, osg::Vec2i const& size,
                               std::function<void(osg::Vec2i const&)> redraw) {
    record<GraphicCommandDrawFunc>(commands, std::move(draw), size, std::move(redraw));
}

void GraphicCommands::drawToTarget(std::shared_ptr<rastFrameBuffer> target, osg::Vec2i const& size,
                                   orm::vector<GraphicCommand*> const& nested) {
    record<GraphicCommandDrawToTarget>(commands, std::move(target), size, nested);
}

void GraphicCommands::parse(std::function<void()> func) {
    GraphicCommandParse* command = GraphicCommandParse::take();
    command->set(std::move(func));
    parseCommands.push_back(command);
}

void GraphicCommands::add(GraphicCommand* command) {
    if (command)
        commands.push_back(command);
}

void GraphicCommands::clear() {
    commands.clear();
    parseCommands.clear();
}

float GraphicCommands::getCurrentOpacity() { return g_currentOpacity; }

float GraphicCommands::getCurrentScale() { return g_currentScale; }

// ---------------------------------------------------------------------------
// Guards

GraphicCommandModelViewMatrixGuard::GraphicCommandModelViewMatrixGuard(GraphicCommands& commands)
    : commands_(commands) {
    GraphicCommandModelViewMatrix* push = GraphicCommandModelViewMatrix::take();
    push->addOp(GraphicCommandModelViewMatrix::Push);
    commands_.add(push);
    pending_ = GraphicCommandModelViewMatrix::take();
}

GraphicCommandModelViewMatrixGuard::~GraphicCommandModelViewMatrixGuard() {
    GraphicCommandModelViewMatrix* pop = GraphicCommandModelViewMatrix::take();
    pop->addOp(GraphicCommandModelViewMatrix::Pop);
    commands_.add(pop);
    // Trailing make* steps never reach the list.
    pending_->release();
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeIdentity() {
    pending_->addOp(GraphicCommandModelViewMatrix::MakeIdentity);
    return *this;
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeTranslate(float x, float y, float z) {
    pending_->addOp(GraphicCommandModelViewMatrix::MakeTranslate, x, y, z);
    return *this;
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::makeRotate(float angle, float x, float y,
                                                                                   float z) {
    pending_->addOp(GraphicCommandModelViewMatrix::MakeRotate, x, y, z, angle);
    return *this;
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::setIdentity() {
    pending_->addOp(GraphicCommandModelViewMatrix::SetIdentity);
    return flush_();
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::setTranslate(float x, float y, float z) {
    pending_->addOp(GraphicCommandModelViewMatrix::SetTranslate, x, y, z);
    return flush_();
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::setRotate(float angle, float x, float y,
                                                                                  float z) {
    pending_->addOp(GraphicCommandModelViewMatrix::SetRotate, x, y, z, angle);
    return flush_();
}

GraphicCommandModelViewMatrixGuard& GraphicCommandModelViewMatrixGuard::flush_() {
    commands_.add(pending_);
    pending_ = GraphicCommandModelViewMatrix::take();
    return *this;
}

GraphicCommandProjectionMatrixGuard::GraphicCommandProjectionMatrixGuard(GraphicCommands& commands)
    : commands_(commands) {
    GraphicCommandProjectionMatrix* push = GraphicCommandProjectionMatrix::take();
    push->addOp(GraphicCommandProjectionMatrix::Push);
    commands_.add(push);
}

GraphicCommandProjectionMatrixGuard::~GraphicCommandProjectionMatrixGuard() {
    GraphicCommandProjectionMatrix* pop = GraphicCommandProjectionMatrix::take();
    pop->addOp(GraphicCommandProjectionMatrix::Pop);
    commands_.add(pop);
}

GraphicCommandProjectionMatrixGuard& GraphicCommandProjectionMatrixGuard::makeOrtho2D(float left, float right,
                                                                                     float bottom, float top) {
    GraphicCommandProjectionMatrix* ortho = GraphicCommandProjectionMatrix::take();
    ortho->addOp(GraphicCommandProjectionMatrix::Ortho2D, left, right, bottom, top);
    commands_.add(ortho);
    return *this;
}

GraphicCommandShaderTechniqueGuard::GraphicCommandShaderTechniqueGuard(GraphicCommands& commands, int type)
    : commands_(commands) {
    GraphicCommandPushShaderTechnique* push = GraphicCommandPushShaderTechnique::take();
    push->set(type);
    commands_.add(push);
}

GraphicCommandShaderTechniqueGuard::~GraphicCommandShaderTechniqueGuard() {
    commands_.add(GraphicCommandPopShaderTechnique::take());
}

GraphicCommandOpacityGuard::GraphicCommandOpacityGuard(GraphicCommands& commands, float opacity)
    : commands_(commands), saved_(GraphicCommands::getCurrentOpacity()) {
    commands_.setOpacity(opacity);
}

GraphicCommandOpacityGuard::~GraphicCommandOpacityGuard() { commands_.setOpacity(saved_); }

GraphicCommandSetScaleGuard::GraphicCommandSetScaleGuard(GraphicCommands& commands, float scale)
    : commands_(commands), saved_(GraphicCommands::getCurrentScale()) {
    commands_.setScale(scale);
}

GraphicCommandSetScaleGuard::~GraphicCommandSetScaleGuard() { commands_.setScale(saved_); }

GraphicCommandShiftPositionGuard::GraphicCommandShiftPositionGuard(GraphicCommands& commands, float x, float y)
    : commands_(commands), x_(x), y_(y) {
    commands_.shiftPosition(x, y);
}

GraphicCommandShiftPositionGuard::~GraphicCommandShiftPositionGuard() { commands_.shiftPosition(-x_, -y_); }

GraphicCommandViewportGuard::GraphicCommandViewportGuard(GraphicCommands& commands, osg::Recti const& rect)
    : commands_(commands) {
    commands_.pushViewport(rect);
}

GraphicCommandViewportGuard::~GraphicCommandViewportGuard() { commands_.popViewport(); }

GraphicCommandClipRectGuard::GraphicCommandClipRectGuard(GraphicCommands& commands, osg::Recti const& rect)
    : commands_(commands) {
    commands_.pushClipRect(rect);
}

GraphicCommandClipRectGuard::~GraphicCommandClipRectGuard() { commands_.popClipRect(); }

// One pool per command type, all of them here.
template class SimpleGraphicCommand<GraphicCommandProjectionMatrix>;
template class SimpleGraphicCommand<GraphicCommandModelViewMatrix>;
template class SimpleGraphicCommand<GraphicCommandSetModelViewMatrix>;
template class SimpleGraphicCommand<GraphicCommandPreMultModelViewMatrix>;
template class SimpleGraphicCommand<GraphicCommandPushShaderTechnique>;
template class SimpleGraphicCommand<GraphicCommandPopShaderTechnique>;
template class SimpleGraphicCommand<GraphicCommandSetShaderTechnique>;
template class SimpleGraphicCommand<GraphicCommandSetTextureFiltering>;
template class SimpleGraphicCommand<GraphicCommandPushClipRect>;
template class SimpleGraphicCommand<GraphicCommandPopClipRect>;
template class SimpleGraphicCommand<GraphicCommandPushViewport>;
template class SimpleGraphicCommand<GraphicCommandPopViewport>;
template class SimpleGraphicCommand<GraphicCommandSetOpacity>;
template class SimpleGraphicCommand<GraphicCommandSetScale>;
template class SimpleGraphicCommand<GraphicCommandShiftPosition>;
template class SimpleGraphicCommand<GraphicCommandDrawBkg>;
template class SimpleGraphicCommand<GraphicCommandDrawQuads>;
template class SimpleGraphicCommand<GraphicCommandDrawText>;
template class SimpleGraphicCommand<GraphicCommandDrawGeometry>;
template class SimpleGraphicCommand<GraphicCommandDrawFunc>;
template class SimpleGraphicCommand<GraphicCommandDrawToTarget>;
template class SimpleGraphicCommand<GraphicCommandParse>;

}  // namespace gui
