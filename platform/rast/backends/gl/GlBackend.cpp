#include "rast/backends/gl/GlBackend.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>

#include "orm/Log.h"
#include "rast/Geometry.h"
#include "rast/backends/gl/GlProgram.h"
#include "rast/backends/gl/GlShaderSources.h"
#include "rast/backends/gl/PngFile.h"

namespace {

constexpr int kSamplerLinear = 0;
constexpr int kSamplerNearest = 1;
constexpr int kSamplerMipmap = 2;
// The clip of a merged vertex when clipping is off: far beyond any target.
constexpr float kNoClip = 1.0e8f;

bool isAffine(osg::Matrixf const& m) {
    float const* p = m.ptr();
    return p[3] == 0 && p[7] == 0 && p[11] == 0 && p[15] == 1;
}

// Points the vertex attributes at `buffer`, which holds rastVertex records.
void bindVertexBuffer(GLuint buffer, GLuint indexBuffer) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    GLsizei const stride = sizeof(rastVertex);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride, reinterpret_cast<void const*>(offsetof(rastVertex, x)));
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride, reinterpret_cast<void const*>(offsetof(rastVertex, u)));
    glVertexAttribPointer(2, 4, GL_FLOAT, GL_FALSE, stride,
                          reinterpret_cast<void const*>(offsetof(rastVertex, color)));
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer);
}

GLuint makeSampler(GLint minFilter, GLint magFilter) {
    GLuint sampler = 0;
    glGenSamplers(1, &sampler);
    glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, minFilter);
    glSamplerParameteri(sampler, GL_TEXTURE_MAG_FILTER, magFilter);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return sampler;
}

// GL's mode and the number of vertices for `count` primitives starting at
// primitive `first`; false for an unknown primitive.
bool primitiveRange(int primitive, int count, int first, GLenum& mode, int& offset, int& vertices) {
    switch (primitive) {
    case rastGeometry::Points:
        mode = GL_POINTS, offset = first, vertices = count;
        return true;
    case rastGeometry::Lines:
        mode = GL_LINES, offset = first * 2, vertices = count * 2;
        return true;
    case rastGeometry::LineStrip:
        mode = GL_LINE_STRIP, offset = first, vertices = count + 1;
        return true;
    case rastGeometry::Triangles:
        mode = GL_TRIANGLES, offset = first * 3, vertices = count * 3;
        return true;
    case rastGeometry::TriangleStrip:
        mode = GL_TRIANGLE_STRIP, offset = first, vertices = count + 2;
        return true;
    default:
        return false;
    }
}

bool readFile(std::string const& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::ostringstream content;
    content << in.rdbuf();
    text = content.str();
    return true;
}

}  // namespace

// ---------------------------------------------------------------------------
// Life

rastGlBackend::rastGlBackend(std::string assetDir) : assetDir_(std::move(assetDir)) {
    // epoxy answers 0 without a current context.
    int const version = epoxy_gl_version();
    if (version < 33 || !epoxy_is_desktop_gl()) {
        orm_vlogf("VUREL", 16, "rastGlBackend: no OpenGL 3.3 context (version %d.%d); nothing will be drawn",
                  version / 10, version % 10);
        return;
    }
    valid_ = createBuiltins_() && createMerged_();
    batch_.reserve(4 * 1024);
    merged_.reserve(4 * 1024);
    bindStack_.reserve(8);
}

rastGlBackend::~rastGlBackend() {
    if (valid_)
        destroyAll_();
}

bool rastGlBackend::createBuiltins_() {
    std::string const vertex = rastGlBuiltinVertexSource();
    for (int kind = 0; kind < 3; ++kind) {
        builtins_[kind] = std::make_unique<rastGlProgram>(
            "builtin", vertex, rastGlBuiltinFragmentSource(static_cast<rastGlTextureKind>(kind)));
        if (!builtins_[kind]->isValid())
            return false;
    }
    samplers_[kSamplerLinear] = makeSampler(GL_LINEAR, GL_LINEAR);
    samplers_[kSamplerNearest] = makeSampler(GL_NEAREST, GL_NEAREST);
    samplers_[kSamplerMipmap] = makeSampler(GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR);

    glGenVertexArrays(1, &vertexArray_);
    glBindVertexArray(vertexArray_);
    for (GLuint attribute = 0; attribute < 3; ++attribute)
        glEnableVertexAttribArray(attribute);
    glGenBuffers(1, &quadVertexBuffer_);
    glGenBuffers(1, &quadIndexBuffer_);
    ensureQuadIndices_(1024);

    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    // Rotated pictures must not vanish at the near and far planes of a flat projection.
    glEnable(GL_DEPTH_CLAMP);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    return true;
}

bool rastGlBackend::createMerged_() {
    static_assert(kMergedUnits == rastGlMergedTextureUnits);
    // The program for batches of two textures, the common case, is built now
    // to learn that merged programs compile here; the others when first used.
    if (!getMergedProgram_(2))
        return false;
    glGenVertexArrays(1, &mergedVertexArray_);
    glGenBuffers(1, &mergedVertexBuffer_);
    glBindVertexArray(mergedVertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, mergedVertexBuffer_);
    GLsizei const stride = sizeof(MergedVertex);
    auto at = [](size_t offset) { return reinterpret_cast<void const*>(offset); };
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride, at(offsetof(MergedVertex, x)));
    glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, stride, at(offsetof(MergedVertex, u)));
    glVertexAttribPointer(2, 4, GL_FLOAT, GL_FALSE, stride, at(offsetof(MergedVertex, color)));
    glVertexAttribPointer(3, 4, GL_FLOAT, GL_FALSE, stride, at(offsetof(MergedVertex, clip)));
    glVertexAttribIPointer(4, 1, GL_INT, stride, at(offsetof(MergedVertex, slot)));
    for (GLuint attribute = 0; attribute < 5; ++attribute)
        glEnableVertexAttribArray(attribute);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, quadIndexBuffer_);
    glBindVertexArray(vertexArray_);
    return true;
}

void rastGlBackend::destroyAll_() {
    for (auto& [id, fb] : frameBuffers_) {
        GLuint names[2] = {fb.frameBuffer, fb.msaaFrameBuffer};
        glDeleteFramebuffers(2, names);
        glDeleteRenderbuffers(1, &fb.msaaColor);
    }
    frameBuffers_.clear();
    for (auto& [id, texture] : textures_) {
        GLuint name = id;
        glDeleteTextures(1, &name);
    }
    textures_.clear();
    for (auto& [id, geometry] : geometries_) {
        GLuint buffers[2] = {geometry.vertexBuffer, geometry.indexBuffer};
        glDeleteBuffers(2, buffers);
    }
    geometries_.clear();
    programs_.clear();
    for (auto& builtin : builtins_)
        builtin.reset();
    glDeleteSamplers(3, samplers_);
    GLuint buffers[2] = {quadVertexBuffer_, quadIndexBuffer_};
    glDeleteBuffers(2, buffers);
    glDeleteVertexArrays(1, &vertexArray_);
    for (auto& program : mergedPrograms_)
        program.reset();
    glDeleteBuffers(1, &mergedVertexBuffer_);
    glDeleteVertexArrays(1, &mergedVertexArray_);
}

// ---------------------------------------------------------------------------
// Targets

void rastGlBackend::setDefaultTarget(uint32_t glFrameBuffer, int width, int height) {
    if (!valid_)
        return;
    flush_();
    defaultFrameBuffer_ = glFrameBuffer;
    defaultWidth_ = std::max(width, 0);
    defaultHeight_ = std::max(height, 0);
    viewport_ = osg::Recti(0, 0, defaultWidth_, defaultHeight_);
    if (bindStack_.empty())
        bindTarget_();
}

rastGlBackend::Target rastGlBackend::getTarget_() const {
    if (!bindStack_.empty()) {
        auto found = frameBuffers_.find(bindStack_.back());
        if (found != frameBuffers_.end()) {
            FrameBuffer const& fb = found->second;
            return Target{fb.msaaFrameBuffer ? fb.msaaFrameBuffer : fb.frameBuffer, fb.width, fb.height, true};
        }
    }
    return Target{defaultFrameBuffer_, defaultWidth_, defaultHeight_, defaultFrameBuffer_ != 0};
}

void rastGlBackend::bindTarget_() {
    glBindFramebuffer(GL_FRAMEBUFFER, getTarget_().drawFrameBuffer);
    // Viewport and scissor are kept in target pixels; their GL form depends on the target.
    applyViewport_();
    applyScissor_();
}

void rastGlBackend::toGlRect_(osg::Recti const& rect, int out[4]) const {
    Target const target = getTarget_();
    int const w = std::max(rect.max.x - rect.min.x, 0);
    int const h = std::max(rect.max.y - rect.min.y, 0);
    out[0] = rect.min.x;
    out[1] = target.topDown ? rect.min.y : target.height - rect.max.y;
    out[2] = w;
    out[3] = h;
}

void rastGlBackend::applyViewport_() {
    int r[4];
    toGlRect_(viewport_, r);
    glViewport(r[0], r[1], r[2], r[3]);
}

void rastGlBackend::applyScissor_() {
    scissorApplied_ = true;
    if (!scissorOn_) {
        glDisable(GL_SCISSOR_TEST);
        return;
    }
    int r[4];
    toGlRect_(scissor_, r);
    glEnable(GL_SCISSOR_TEST);
    glScissor(r[0], r[1], r[2], r[3]);
}

void rastGlBackend::syncScissor_() {
    if (!scissorApplied_)
        applyScissor_();
}

void rastGlBackend::leaveTarget_(rastFrameBufferId id) {
    auto found = frameBuffers_.find(id);
    if (found == frameBuffers_.end())
        return;
    FrameBuffer const& fb = found->second;
    if (fb.msaaFrameBuffer) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, fb.msaaFrameBuffer);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, fb.frameBuffer);
        bool const scissor = glIsEnabled(GL_SCISSOR_TEST);
        glDisable(GL_SCISSOR_TEST);
        glBlitFramebuffer(0, 0, fb.width, fb.height, 0, 0, fb.width, fb.height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
        if (scissor)
            glEnable(GL_SCISSOR_TEST);
    }
    if (Texture* texture = findTexture_(fb.texture)) {
        texture->mipsReady = false;
        if (fb.mips)
            generateMips_(fb.texture, *texture);
    }
}

rastFrameBufferId rastGlBackend::createFrameBuffer(int width, int height, int msaa, bool mips,
                                                   rastTextureId& colorTexture) {
    colorTexture = 0;
    if (!valid_)
        return 0;
    if (width <= 0 || height <= 0) {
        orm_vlogf("VUREL", 16, "createFrameBuffer: invalid size %dx%d", width, height);
        return 0;
    }
    flush_();
    FrameBuffer fb;
    fb.width = width;
    fb.height = height;
    fb.mips = mips;
    fb.texture = createTexture(width, height, rastPixelFormat::RGBA8, nullptr);
    textures_[fb.texture].premultiplied = true;

    glGenFramebuffers(1, &fb.frameBuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, fb.frameBuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, fb.texture, 0);
    GLint maxSamples = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
    int const samples = std::min(msaa, static_cast<int>(maxSamples));
    if (samples > 1) {
        glGenRenderbuffers(1, &fb.msaaColor);
        glBindRenderbuffer(GL_RENDERBUFFER, fb.msaaColor);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_RGBA8, width, height);
        glGenFramebuffers(1, &fb.msaaFrameBuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, fb.msaaFrameBuffer);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, fb.msaaColor);
    }
    bool const complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    rastFrameBufferId const id = fb.frameBuffer;
    frameBuffers_.emplace(id, fb);
    glBindFramebuffer(GL_FRAMEBUFFER, getTarget_().drawFrameBuffer);
    if (!complete) {
        orm_vlogf("VUREL", 16, "createFrameBuffer: %dx%d msaa %d is not complete", width, height, msaa);
        destroyFrameBuffer(id);
        return 0;
    }
    colorTexture = fb.texture;
    return id;
}

void rastGlBackend::destroyFrameBuffer(rastFrameBufferId id) {
    auto found = frameBuffers_.find(id);
    if (!valid_ || found == frameBuffers_.end())
        return;
    flush_();
    FrameBuffer const fb = found->second;
    frameBuffers_.erase(found);
    auto inStack = std::find(bindStack_.begin(), bindStack_.end(), id);
    bool const wasBound = inStack != bindStack_.end();
    bindStack_.erase(inStack, bindStack_.end());
    GLuint names[2] = {fb.frameBuffer, fb.msaaFrameBuffer};
    glDeleteFramebuffers(2, names);
    glDeleteRenderbuffers(1, &fb.msaaColor);
    destroyTexture(fb.texture);
    if (wasBound)
        bindTarget_();
}

void rastGlBackend::bindFrameBuffer(rastFrameBufferId id) { bindFrameBuffer_(id, false); }

void rastGlBackend::bindFrameBufferKeeping(rastFrameBufferId id) { bindFrameBuffer_(id, true); }

void rastGlBackend::bindFrameBuffer_(rastFrameBufferId id, bool keep) {
    if (!valid_)
        return;
    flush_();
    if (id != 0 && frameBuffers_.count(id) == 0) {
        orm_vlogf("VUREL", 16, "bindFrameBuffer: unknown frame buffer %u; binding the default target", id);
        id = 0;
    }
    if (id == getBoundId_())
        return;
    leaveTarget_(getBoundId_());
    // Coming back to a target further out keeps its picture; entering a new
    // one starts it transparent unless it is kept to be drawn again in part.
    auto inStack = std::find(bindStack_.begin(), bindStack_.end(), id);
    bool const entering = id != 0 && inStack == bindStack_.end();
    if (id == 0)
        bindStack_.clear();
    else if (inStack != bindStack_.end())
        bindStack_.erase(inStack + 1, bindStack_.end());
    else
        bindStack_.push_back(id);
    bindTarget_();
    if (entering && !keep) {
        glDisable(GL_SCISSOR_TEST);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        applyScissor_();
    }
}

// ---------------------------------------------------------------------------
// Textures

rastGlBackend::Texture* rastGlBackend::findTexture_(rastTextureId id) {
    auto found = textures_.find(id);
    return found != textures_.end() ? &found->second : nullptr;
}

rastTextureId rastGlBackend::createTexture(int width, int height, rastPixelFormat format, void const* pixels) {
    if (!valid_)
        return 0;
    if (width <= 0 || height <= 0) {
        orm_vlogf("VUREL", 16, "createTexture: invalid size %dx%d", width, height);
        return 0;
    }
    flush_();
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    if (format == rastPixelFormat::A8) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, width, height, 0, GL_RED, GL_UNSIGNED_BYTE, pixels);
        // Coverage textures read as white with the texel as alpha.
        GLint const swizzle[4] = {GL_ONE, GL_ONE, GL_ONE, GL_RED};
        glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_SWIZZLE_RGBA, swizzle);
    } else {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    }
    Texture texture;
    texture.width = width;
    texture.height = height;
    texture.format = format;
    textures_.emplace(name, texture);
    return name;
}

void rastGlBackend::updateTexture(rastTextureId id, int x, int y, int width, int height, rastPixelFormat format,
                                  void const* pixels) {
    Texture* texture = valid_ ? findTexture_(id) : nullptr;
    if (!texture || texture->isArray || !pixels)
        return;
    if (format != texture->format || x < 0 || y < 0 || width <= 0 || height <= 0 || x + width > texture->width ||
        y + height > texture->height) {
        orm_vlogf("VUREL", 16, "updateTexture: rectangle %d %d %dx%d or format does not fit texture %u", x, y, width,
                  height, id);
        return;
    }
    flush_();
    glBindTexture(GL_TEXTURE_2D, id);
    glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, format == rastPixelFormat::A8 ? GL_RED : GL_RGBA,
                    GL_UNSIGNED_BYTE, pixels);
    texture->mipsReady = false;
}

rastTextureId rastGlBackend::createTextureArray(int width, int height, int layers) {
    if (!valid_)
        return 0;
    if (width <= 0 || height <= 0 || layers <= 0) {
        orm_vlogf("VUREL", 16, "createTextureArray: invalid size %dx%d, %d layers", width, height, layers);
        return 0;
    }
    flush_();
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D_ARRAY, name);
    glTexImage3D(GL_TEXTURE_2D_ARRAY, 0, GL_RGBA8, width, height, layers, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    Texture texture;
    texture.width = width;
    texture.height = height;
    texture.layers = layers;
    texture.isArray = true;
    textures_.emplace(name, texture);
    return name;
}

void rastGlBackend::updateTextureLayer(rastTextureId id, int layer, void const* rgbaPixels) {
    Texture* texture = valid_ ? findTexture_(id) : nullptr;
    if (!texture || !texture->isArray || !rgbaPixels || layer < 0 || layer >= texture->layers)
        return;
    flush_();
    glBindTexture(GL_TEXTURE_2D_ARRAY, id);
    glTexSubImage3D(GL_TEXTURE_2D_ARRAY, 0, 0, 0, layer, texture->width, texture->height, 1, GL_RGBA,
                    GL_UNSIGNED_BYTE, rgbaPixels);
    texture->mipsReady = false;
}

void rastGlBackend::destroyTexture(rastTextureId id) {
    if (!valid_ || !findTexture_(id))
        return;
    flush_();
    GLuint name = id;
    glDeleteTextures(1, &name);
    textures_.erase(id);
}

void rastGlBackend::generateMips_(rastTextureId id, Texture& texture) {
    GLenum const target = texture.isArray ? GL_TEXTURE_2D_ARRAY : GL_TEXTURE_2D;
    glBindTexture(target, id);
    glGenerateMipmap(target);
    texture.mipsReady = true;
}

// ---------------------------------------------------------------------------
// Geometry

void rastGlBackend::uploadGeometry_(Geometry& geometry, rastVertex const* vertices, int vertexCount,
                                    int const* indices, int indexCount) {
    geometry.vertexCount = vertices ? std::max(vertexCount, 0) : 0;
    geometry.indexCount = indices ? std::max(indexCount, 0) : 0;
    // Indices that point past the vertices would read outside the buffer.
    for (int i = 0; i < geometry.indexCount; ++i) {
        if (indices[i] < 0 || indices[i] >= geometry.vertexCount) {
            orm_vlogf("VUREL", 16, "Geometry index %d out of range of %d vertices; indices dropped", indices[i],
                      geometry.vertexCount);
            geometry.indexCount = 0;
            break;
        }
    }
    glBindBuffer(GL_ARRAY_BUFFER, geometry.vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(sizeof(rastVertex) * size_t(geometry.vertexCount)),
                 geometry.vertexCount ? vertices : nullptr, GL_DYNAMIC_DRAW);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, geometry.indexBuffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(sizeof(int) * size_t(geometry.indexCount)),
                 geometry.indexCount ? indices : nullptr, GL_DYNAMIC_DRAW);
}

rastGeometryId rastGlBackend::createGeometry(rastVertex const* vertices, int vertexCount, int const* indices,
                                             int indexCount) {
    if (!valid_)
        return 0;
    flush_();
    Geometry geometry;
    glGenBuffers(1, &geometry.vertexBuffer);
    glGenBuffers(1, &geometry.indexBuffer);
    uploadGeometry_(geometry, vertices, vertexCount, indices, indexCount);
    rastGeometryId const id = nextGeometry_++;
    geometries_.emplace(id, geometry);
    return id;
}

void rastGlBackend::updateGeometry(rastGeometryId id, rastVertex const* vertices, int vertexCount,
                                   int const* indices, int indexCount) {
    auto found = geometries_.find(id);
    if (!valid_ || found == geometries_.end())
        return;
    flush_();
    uploadGeometry_(found->second, vertices, vertexCount, indices, indexCount);
}

void rastGlBackend::destroyGeometry(rastGeometryId id) {
    auto found = geometries_.find(id);
    if (!valid_ || found == geometries_.end())
        return;
    GLuint buffers[2] = {found->second.vertexBuffer, found->second.indexBuffer};
    glDeleteBuffers(2, buffers);
    geometries_.erase(found);
}

// ---------------------------------------------------------------------------
// Effect programs

rastProgramId rastGlBackend::loadProgram(char const* name) {
    if (!valid_ || !name || !*name)
        return 0;
    std::string const path = assetDir_.empty() ? std::string(name) : assetDir_ + "/" + name;
    std::string text, vertex, fragment;
    if (!readFile(path, text)) {
        orm_vlogf("VUREL", 16, "loadProgram: cannot read effect file %s", path.c_str());
        return 0;
    }
    if (!rastGlProgram::splitStages(text, vertex, fragment)) {
        orm_vlogf("VUREL", 16, "loadProgram: %s lacks a \"-- vertex\" or a \"-- fragment\" stage", path.c_str());
        return 0;
    }
    flush_();
    auto program = std::make_unique<rastGlProgram>(name, vertex, fragment);
    if (!program->isValid())
        return 0;
    rastProgramId const id = program->getName();
    programs_[id] = std::move(program);
    return id;
}

void rastGlBackend::setProgramParameter(rastProgramId program, char const* name, float const* values, int count) {
    auto found = programs_.find(program);
    if (!valid_ || found == programs_.end() || !name || !values || count <= 0)
        return;
    GLint const location = found->second->getParameterLocation(name);
    if (location < 0)
        return;
    // Quads already batched with this program must see the old value.
    if (batchState_.program == program)
        flush_();
    glUseProgram(found->second->getName());
    glUniform1fv(location, count, values);
}

void rastGlBackend::destroyProgram(rastProgramId id) {
    if (!valid_ || programs_.count(id) == 0)
        return;
    flush_();
    programs_.erase(id);
}

// ---------------------------------------------------------------------------
// Pipeline state

void rastGlBackend::setViewport(osg::Recti const& rect) {
    if (!valid_ || rect == viewport_)
        return;
    flush_();
    viewport_ = rect;
    applyViewport_();
}

// A merged batch carries its clip rectangles with its vertices; only a
// uniform one is cut by GL's scissor, which is set when next needed.
void rastGlBackend::pushClipRect(osg::Recti const& effective) {
    if (!valid_ || (scissorOn_ && effective == scissor_))
        return;
    if (!merging_)
        flush_();
    scissorOn_ = true;
    scissor_ = effective;
    scissorApplied_ = false;
}

void rastGlBackend::popClipRect(osg::Recti const* restored) {
    if (!valid_)
        return;
    bool const on = restored != nullptr;
    if (on == scissorOn_ && (!on || *restored == scissor_))
        return;
    if (!merging_)
        flush_();
    scissorOn_ = on;
    if (on)
        scissor_ = *restored;
    scissorApplied_ = false;
}

void rastGlBackend::setProjectionMatrix(osg::Matrixf const& m) {
    if (!valid_ || m == projection_)
        return;
    flush_();
    projection_ = m;
}

void rastGlBackend::setModelViewMatrix(osg::Matrixf const& m) {
    if (!valid_ || m == modelView_)
        return;
    // Merged batches hold positions the model-view has already moved.
    if (!merging_)
        flush_();
    modelView_ = m;
    modelViewAffine_ = isAffine(m);
}

void rastGlBackend::clear(osg::Vec4f const& color) {
    if (!valid_)
        return;
    flush_();
    syncScissor_();
    // Targets hold premultiplied colour.
    glClearColor(color.x * color.w, color.y * color.w, color.z * color.w, color.w);
    glClear(GL_COLOR_BUFFER_BIT);
}

// ---------------------------------------------------------------------------
// Draws

void rastGlBackend::drawQuads(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors,
                              int count) {
    if (!valid_ || !quads || count <= 0)
        return;
    Texture const* texture = state.texture ? findTexture_(state.texture) : nullptr;
    if (canMerge_(state, texture))
        drawMerged_(state, texture, quads, colors, count);
    else
        drawUniform_(state, quads, colors, count);
    if (!batching_)
        flush_();
}

void rastGlBackend::setBatching(bool on) {
    if (valid_)
        flush_();
    batching_ = on;
}

void rastGlBackend::drawUniform_(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors,
                                 int count) {
    if (batchQuads_ > 0 && (merging_ || !(state == batchState_)))
        flush_();
    batchState_ = state;
    merging_ = false;
    appendQuads_(state, quads, colors, count);
}

void rastGlBackend::appendQuads_(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors,
                                 int count) {
    float const s = state.scale;
    for (int i = 0; i < count; ++i) {
        rastQuad const& q = quads[i];
        osg::Vec4f const color = colors ? colors[i] : osg::Vec4f(1, 1, 1, 1);
        float const x0 = (q.x + state.shift.x) * s, y0 = (q.y + state.shift.y) * s;
        float const x1 = (q.x + q.w + state.shift.x) * s, y1 = (q.y + q.h + state.shift.y) * s;
        // z numbers the quad within the batch, for effect programs that place quads themselves.
        float const z = static_cast<float>(batchQuads_);
        batch_.push_back(rastVertex{x0, y0, z, q.uMin, q.vMin, color});
        batch_.push_back(rastVertex{x1, y0, z, q.uMax, q.vMin, color});
        batch_.push_back(rastVertex{x1, y1, z, q.uMax, q.vMax, color});
        batch_.push_back(rastVertex{x0, y1, z, q.uMin, q.vMax, color});
        ++batchQuads_;
    }
}

void rastGlBackend::ensureQuadIndices_(int quads) {
    if (quads <= quadIndexCapacity_)
        return;
    int const capacity = std::max(quads, quadIndexCapacity_ * 2);
    std::vector<GLuint> indices;
    indices.reserve(size_t(capacity) * 6);
    for (GLuint q = 0; q < GLuint(capacity); ++q)
        for (GLuint corner : {0u, 1u, 2u, 0u, 2u, 3u})
            indices.push_back(q * 4 + corner);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, quadIndexBuffer_);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(GLuint)),
                 indices.data(), GL_STATIC_DRAW);
    quadIndexCapacity_ = capacity;
}

void rastGlBackend::flush_() {
    if (batchQuads_ == 0)
        return;
    int const quads = batchQuads_;
    batchQuads_ = 0;
    if (merging_)
        flushMerged_(quads);
    else
        flushUniform_(quads);
}

void rastGlBackend::flushUniform_(int quads) {
    syncScissor_();
    if (applyDrawState_(batchState_)) {
        ensureQuadIndices_(quads);
        glBindVertexArray(vertexArray_);
        glBindBuffer(GL_ARRAY_BUFFER, quadVertexBuffer_);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(batch_.size() * sizeof(rastVertex)), batch_.data(),
                     GL_STREAM_DRAW);
        bindVertexBuffer(quadVertexBuffer_, quadIndexBuffer_);
        glDrawElements(GL_TRIANGLES, quads * 6, GL_UNSIGNED_INT, nullptr);
        ++stats_.drawCalls;
        stats_.quads += quads;
        stats_.vertices += quads * 4;
    }
    batch_.clear();
}

void rastGlBackend::drawGeometry(rastDrawState const& state, rastGeometryId geometry, int primitive, int count,
                                 int first) {
    if (!valid_)
        return;
    flush_();
    auto found = geometries_.find(geometry);
    if (found == geometries_.end() || count <= 0 || first < 0)
        return;
    GLenum mode = GL_TRIANGLES;
    int offset = 0, vertices = 0;
    if (!primitiveRange(primitive, count, first, mode, offset, vertices)) {
        orm_vlogf("VUREL", 16, "drawGeometry: unknown primitive type %d", primitive);
        return;
    }
    Geometry const& g = found->second;
    int const available = g.indexCount > 0 ? g.indexCount : g.vertexCount;
    vertices = std::min(vertices, available - offset);
    if (vertices <= 0 || !applyDrawState_(state))
        return;
    syncScissor_();
    glBindVertexArray(vertexArray_);
    bindVertexBuffer(g.vertexBuffer, g.indexBuffer);
    if (g.indexCount > 0)
        glDrawElements(mode, vertices, GL_UNSIGNED_INT, reinterpret_cast<void const*>(size_t(offset) * sizeof(int)));
    else
        glDrawArrays(mode, offset, vertices);
    ++stats_.drawCalls;
    stats_.vertices += vertices;
}

rastGlProgram* rastGlBackend::applyDrawState_(rastDrawState const& state) {
    // An unknown texture draws untextured, as texture 0 does.
    Texture* texture = state.texture ? findTexture_(state.texture) : nullptr;
    rastGlProgram* program = nullptr;
    if (state.program) {
        auto found = programs_.find(state.program);
        if (found != programs_.end())
            program = found->second.get();
    }
    if (!program) {
        rastGlTextureKind const kind =
            !texture ? rastGlTextureKind::None : texture->isArray ? rastGlTextureKind::Array : rastGlTextureKind::Plain;
        program = builtins_[static_cast<int>(kind)].get();
    }
    glUseProgram(program->getName());
    rastGlProgram::Uniforms const& u = program->getUniforms();
    glUniformMatrix4fv(u.projection, 1, GL_FALSE, projection_.ptr());
    glUniformMatrix4fv(u.modelView, 1, GL_FALSE, modelView_.ptr());
    glUniform1f(u.flipY, getTarget_().topDown ? -1.0f : 1.0f);
    glUniform4f(u.color, state.color.x, state.color.y, state.color.z, state.color.w);
    glUniform1f(u.opacity, state.opacity);
    glUniform1f(u.gamma, state.gamma);
    glUniform1f(u.intensity, state.intensity);
    glUniform1i(u.hasTexture, texture ? 1 : 0);
    if (texture)
        bindTexture_(state, *texture, *program);
    return program;
}

int rastGlBackend::samplerIndex_(int sampler) {
    bool const known = sampler >= kSamplerLinear && sampler <= kSamplerMipmap;
    return known ? sampler : kSamplerLinear;
}

void rastGlBackend::bindTexture_(rastDrawState const& state, Texture& texture, rastGlProgram& program) {
    int const sampler = samplerIndex_(state.sampler);
    if (sampler == kSamplerMipmap && !texture.mipsReady)
        generateMips_(state.texture, texture);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(texture.isArray ? GL_TEXTURE_2D_ARRAY : GL_TEXTURE_2D, state.texture);
    glBindSampler(0, samplers_[sampler]);
    rastGlProgram::Uniforms const& u = program.getUniforms();
    glUniform1i(u.texture, 0);
    glUniform1i(u.premultiplied, texture.premultiplied ? 1 : 0);
    // The draw state names no layer: array pictures show their first.
    glUniform1f(u.layer, 0.0f);
}

// ---------------------------------------------------------------------------
// Merged batches

bool rastGlBackend::canMerge_(rastDrawState const& state, Texture const* texture) const {
    return batching_ && state.program == 0 && !state.textureIsArray && !(texture && texture->isArray) &&
           modelViewAffine_;
}

bool rastGlBackend::sameMergedKey_(rastDrawState const& state) const {
    return state.gamma == batchState_.gamma && state.intensity == batchState_.intensity &&
           state.technique == batchState_.technique;
}

void rastGlBackend::drawMerged_(rastDrawState const& state, Texture const* texture, rastQuad const* quads,
                                osg::Vec4f const* colors, int count) {
    if (batchQuads_ > 0 && (!merging_ || !sameMergedKey_(state)))
        flush_();
    // An unknown texture draws untextured, as texture 0 does.
    int const slot = texture ? findSlot_(state.texture, samplerIndex_(state.sampler)) : -1;
    if (batchQuads_ == 0) {
        batchState_ = state;
        merging_ = true;
    }
    appendMerged_(state, slot, quads, colors, count);
}

int rastGlBackend::findSlot_(rastTextureId texture, int sampler) {
    for (int i = 0; i < slotCount_; ++i)
        if (slots_[i].texture == texture && slots_[i].sampler == sampler)
            return i;
    if (slotCount_ == kMergedUnits)
        flush_();
    slots_[slotCount_] = Slot{texture, sampler};
    return slotCount_++;
}

void rastGlBackend::mergedClip_(float out[4]) const {
    if (!scissorOn_) {
        out[0] = out[1] = -kNoClip;
        out[2] = out[3] = 2 * kNoClip;
        return;
    }
    int r[4];
    toGlRect_(scissor_, r);
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<float>(r[i]);
}

void rastGlBackend::appendMerged_(rastDrawState const& state, int slot, rastQuad const* quads,
                                  osg::Vec4f const* colors, int count) {
    MergedVertex v;
    v.slot = slot;
    mergedClip_(v.clip);
    float const* m = modelView_.ptr();
    auto put = [&](float x, float y, float u, float t) {
        v.x = m[0] * x + m[4] * y + m[12];
        v.y = m[1] * x + m[5] * y + m[13];
        v.z = m[2] * x + m[6] * y + m[14];
        v.u = u;
        v.v = t;
        merged_.push_back(v);
    };
    osg::Vec4f const& tint = state.color;
    float const s = state.scale;
    for (int i = 0; i < count; ++i) {
        rastQuad const& q = quads[i];
        osg::Vec4f const c = colors ? colors[i] : osg::Vec4f(1, 1, 1, 1);
        v.color = osg::Vec4f(c.x * tint.x, c.y * tint.y, c.z * tint.z, c.w * tint.w * state.opacity);
        float const x0 = (q.x + state.shift.x) * s, y0 = (q.y + state.shift.y) * s;
        float const x1 = (q.x + q.w + state.shift.x) * s, y1 = (q.y + q.h + state.shift.y) * s;
        put(x0, y0, q.uMin, q.vMin);
        put(x1, y0, q.uMax, q.vMin);
        put(x1, y1, q.uMax, q.vMax);
        put(x0, y1, q.uMin, q.vMax);
        ++batchQuads_;
    }
}

rastGlProgram* rastGlBackend::getMergedProgram_(int units) {
    std::unique_ptr<rastGlProgram>& program = mergedPrograms_[units];
    if (program)
        return program->isValid() ? program.get() : nullptr;
    program = std::make_unique<rastGlProgram>("merged", rastGlMergedVertexSource(), rastGlMergedFragmentSource(units));
    if (!program->isValid())
        return nullptr;
    // Sampler i reads unit i for good.
    GLint unitNumbers[kMergedUnits];
    for (int i = 0; i < kMergedUnits; ++i)
        unitNumbers[i] = i;
    glUseProgram(program->getName());
    glUniform1iv(program->getUniforms().textures, units, unitNumbers);
    return program.get();
}

void rastGlBackend::flushMerged_(int quads) {
    rastGlProgram* program = getMergedProgram_(slotCount_);
    if (program)
        issueMerged_(*program, quads);
    merged_.clear();
    slotCount_ = 0;
}

void rastGlBackend::issueMerged_(rastGlProgram const& program, int quads) {
    // The clip travels with the vertices: the scissor must cut nothing.
    glDisable(GL_SCISSOR_TEST);
    scissorApplied_ = !scissorOn_;
    rastGlProgram::Uniforms const& u = program.getUniforms();
    glUseProgram(program.getName());
    glUniformMatrix4fv(u.projection, 1, GL_FALSE, projection_.ptr());
    glUniform1f(u.flipY, getTarget_().topDown ? -1.0f : 1.0f);
    glUniform1f(u.gamma, batchState_.gamma);
    glUniform1f(u.intensity, batchState_.intensity);
    bindSlots_(u.slotPremultiplied);

    ensureQuadIndices_(quads);
    glBindVertexArray(mergedVertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, mergedVertexBuffer_);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(merged_.size() * sizeof(MergedVertex)), merged_.data(),
                 GL_STREAM_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, quadIndexBuffer_);
    glDrawElements(GL_TRIANGLES, quads * 6, GL_UNSIGNED_INT, nullptr);
    ++stats_.drawCalls;
    stats_.quads += quads;
    stats_.vertices += quads * 4;
}

void rastGlBackend::bindSlots_(GLint premultipliedLocation) {
    GLint premultiplied[kMergedUnits] = {};
    // Mip generation binds textures itself, so it goes before the units are set.
    for (int i = 0; i < slotCount_; ++i) {
        // Destroying a texture flushes first, so every slot's texture is still there.
        Texture* texture = findTexture_(slots_[i].texture);
        premultiplied[i] = texture && texture->premultiplied ? 1 : 0;
        if (texture && slots_[i].sampler == kSamplerMipmap && !texture->mipsReady)
            generateMips_(slots_[i].texture, *texture);
    }
    for (int i = 0; i < slotCount_; ++i) {
        glActiveTexture(GL_TEXTURE0 + GLenum(i));
        glBindTexture(GL_TEXTURE_2D, slots_[i].texture);
        glBindSampler(GLuint(i), samplers_[slots_[i].sampler]);
    }
    if (slotCount_ > 0)
        glUniform1iv(premultipliedLocation, slotCount_, premultiplied);
}

// ---------------------------------------------------------------------------
// Frames and read-back

void rastGlBackend::endRedraw() {
    if (valid_)
        flush_();
}

void rastGlBackend::endFrame() {
    if (!valid_)
        return;
    flush_();
    glFlush();
}

bool rastGlBackend::readPixels(std::vector<uint8_t>& rgba, int& width, int& height) {
    width = height = 0;
    rgba.clear();
    if (!valid_ || defaultWidth_ <= 0 || defaultHeight_ <= 0)
        return false;
    flush_();
    width = defaultWidth_;
    height = defaultHeight_;
    rgba.resize(size_t(width) * size_t(height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, defaultFrameBuffer_);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, getTarget_().drawFrameBuffer);
    size_t const row = size_t(width) * 4;
    // A window's own frame buffer stores its bottom row first.
    if (defaultFrameBuffer_ == 0)
        for (int y = 0; y < height / 2; ++y)
            std::swap_ranges(rgba.begin() + std::ptrdiff_t(row * size_t(y)),
                             rgba.begin() + std::ptrdiff_t(row * size_t(y + 1)),
                             rgba.begin() + std::ptrdiff_t(row * size_t(height - 1 - y)));
    // The target holds premultiplied colour; pictures are straight.
    for (size_t i = 0; i < rgba.size(); i += 4) {
        unsigned const a = rgba[i + 3];
        if (a == 0 || a == 255)
            continue;
        for (size_t c = 0; c < 3; ++c)
            rgba[i + c] = static_cast<uint8_t>(std::min(255u, (rgba[i + c] * 255u + a / 2) / a));
    }
    return true;
}

bool rastGlBackend::writePng(char const* path) {
    std::vector<uint8_t> rgba;
    int width = 0, height = 0;
    if (!readPixels(rgba, width, height)) {
        orm_vlogf("VUREL", 16, "writePng: no picture to write to %s", path ? path : "(null)");
        return false;
    }
    return rastWritePng(path, rgba.data(), width, height);
}
