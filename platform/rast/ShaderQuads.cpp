#include "rast/ShaderQuads.h"

#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/Texture.h"

void rastShaderQuads::reset() {
    quads_.clear();
    batches_.clear();
}

int rastShaderQuads::beginBatch(rastTexture const* texture, int layer) {
    Batch b;
    b.texture = texture;
    b.layer = layer;
    b.first = static_cast<int>(quads_.size());
    batches_.push_back(b);
    return static_cast<int>(batches_.size()) - 1;
}

void rastShaderQuads::addBatchQuad(float x, float y, float w, float h) {
    if (batches_.empty())
        beginBatch(nullptr, -1);
    rastQuad q;
    q.x = x;
    q.y = y;
    q.w = w;
    q.h = h;
    quads_.push_back(q);
    ++batches_.back().count;
}

void rastShaderQuads::addBatchTexCoords(float uMin, float vMin, float uMax, float vMax) {
    if (quads_.empty())
        return;
    rastQuad& q = quads_.back();
    q.uMin = uMin;
    q.vMin = vMin;
    q.uMax = uMax;
    q.vMax = vMax;
}

void rastShaderQuads::endBatch() {}

void rastShaderQuads::draw(rastShader const& shader) const {
    for (int i = 0; i < getBatchCount(); ++i)
        drawBatch(shader, i);
}

void rastShaderQuads::drawBatch(rastShader const& shader, int index) const {
    if (index < 0 || index >= getBatchCount())
        return;
    Batch const& b = batches_[static_cast<size_t>(index)];
    if (b.count == 0)
        return;
    rastRenderer* renderer = rastRenderer::get();
    rastDrawState const state = renderer->makeDrawState(b.texture ? b.texture->getId() : 0, false);
    renderer->getBackend().drawQuads(state, quads_.data() + b.first, nullptr, b.count);
    (void)shader;
}

void rastShaderBkgQuads::draw(rastShader const& shader) const {
    if (count_ == 0)
        return;
    rastRenderer* renderer = rastRenderer::get();
    rastDrawState state = renderer->makeDrawState(texture_ ? texture_->getId() : 0, false);
    // Cell colours replace the shader's single colour.
    state.color = osg::Vec4f(1, 1, 1, 1);
    osg::Vec4f const* colors =
        shader.getColorCount() >= count_ ? reinterpret_cast<osg::Vec4f const*>(shader.getColors()) : nullptr;
    renderer->getBackend().drawQuads(state, quads_.data(), colors, count_);
}
