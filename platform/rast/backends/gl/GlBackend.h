#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Export.h"
#include "rast/Backend.h"

class rastGlProgram;

// The OpenGL 3.3 core backend: real pixels. It needs a current context when it
// is made and whenever it is called (see EglContext and the application
// shells in platform/app). Without a usable context it logs once and does
// nothing, handing out no objects.
//
// Quads are batched. Those drawn with the built-in program and a plain 2-D
// texture (or none) under an affine model-view are merged: the model-view is
// applied on the CPU, the draw state's colour and opacity go into the vertex
// colour, the clip rectangle travels with each vertex and is cut in the
// fragment program (the GL scissor is off while such a batch is drawn), and
// up to eight textures, each with its own sampler, are bound side by side. So
// model-view, clip, colour and texture changes do not end a merged batch;
// gamma, intensity and technique do, as does a ninth texture. Effect
// programs, texture arrays and non-affine model-views keep uniform batches:
// consecutive drawQuads with equal state, ended by any change of scissor or
// matrices. Any batch is flushed by a change of viewport, projection or
// target, by new parameters for its program, by texture uploads, a geometry
// draw, endRedraw, endFrame and before reading pixels back. With batching off
// every drawQuads is a uniform draw call of its own.
//
// Blending is straight alpha for colour (SRC_ALPHA, ONE_MINUS_SRC_ALPHA) and
// "over" for alpha (ONE, ONE_MINUS_SRC_ALPHA). Drawn over a transparent
// start, that leaves premultiplied colour in a render target, so its texture
// is marked premultiplied and the programs turn it straight again when they
// sample it: a picture drawn into a target and the target drawn as a picture
// look as if drawn directly.
//
// Off-screen targets (frame buffers, and the headless default target) are
// stored top row first, as uploaded pictures are: drawing into them flips y.
// A frame buffer entered afresh starts transparent, unless it is bound with
// bindFrameBufferKeeping; coming back to it from a nested target keeps what
// it holds. Leaving one resolves its multisampling and rebuilds its mipmaps.
//
// An effect file holds GLSL 330 core in two stages, each after a line
// "-- vertex" or "-- fragment". Besides the effect's own parameters (float
// uniforms and float arrays set by name) a program may declare what the
// backend sets on every draw: uProjection, uModelView, uFlipY, uColor,
// uOpacity, uGamma, uIntensity, uTexture (unit 0), uHasTexture,
// uPremultiplied. Attributes are at locations 0 (position; z numbers the
// quad), 1 (texture coordinates) and 2 (colour). A file that is missing or
// does not compile is logged under "VUREL" at level 16 and loads as 0.
class VUREL_EXPORT rastGlBackend : public rastBackend {
public:
    // Effect programs ("PanelFx/guiAlpha.fx"...) are read from files under `assetDir`.
    explicit rastGlBackend(std::string assetDir);
    ~rastGlBackend() override;
    rastGlBackend(rastGlBackend const&) = delete;
    rastGlBackend& operator=(rastGlBackend const&) = delete;

    // False when there was no usable context: nothing is drawn then.
    bool isValid() const { return valid_; }
    // What bindFrameBuffer(0) binds: a GL frame buffer name, 0 for a window's
    // own, of `width` x `height` pixels.
    void setDefaultTarget(uint32_t glFrameBuffer, int width, int height);
    osg::Vec2i getDefaultTargetSize() const { return {defaultWidth_, defaultHeight_}; }

    // The default target's pixels, rows top first, colour not premultiplied.
    bool readPixels(std::vector<uint8_t>& rgba, int& width, int& height);
    // The default target as a PNG file.
    bool writePng(char const* path);

    // On by default. Off, every drawQuads goes out as a draw call of its own:
    // the baseline against which batching is measured.
    void setBatching(bool on);
    bool getBatching() const { return batching_; }

    char const* getName() const override { return "gl"; }

    rastTextureId createTexture(int width, int height, rastPixelFormat format, void const* pixels) override;
    void updateTexture(rastTextureId id, int x, int y, int width, int height, rastPixelFormat format,
                       void const* pixels) override;
    rastTextureId createTextureArray(int width, int height, int layers) override;
    void updateTextureLayer(rastTextureId id, int layer, void const* rgbaPixels) override;
    void destroyTexture(rastTextureId id) override;

    rastGeometryId createGeometry(rastVertex const* vertices, int vertexCount, int const* indices,
                                  int indexCount) override;
    void updateGeometry(rastGeometryId id, rastVertex const* vertices, int vertexCount, int const* indices,
                        int indexCount) override;
    void destroyGeometry(rastGeometryId id) override;

    rastFrameBufferId createFrameBuffer(int width, int height, int msaa, bool mips,
                                        rastTextureId& colorTexture) override;
    void destroyFrameBuffer(rastFrameBufferId id) override;
    void bindFrameBuffer(rastFrameBufferId id) override;
    // Frame buffers keep their pixels between uses (multisampled ones too).
    bool canKeepFrameBuffer() const override { return true; }
    void bindFrameBufferKeeping(rastFrameBufferId id) override;

    rastProgramId loadProgram(char const* name) override;
    void setProgramParameter(rastProgramId program, char const* name, float const* values, int count) override;
    void destroyProgram(rastProgramId id) override;

    void setViewport(osg::Recti const& rect) override;
    void pushClipRect(osg::Recti const& effective) override;
    void popClipRect(osg::Recti const* restored) override;
    void setProjectionMatrix(osg::Matrixf const& m) override;
    void setModelViewMatrix(osg::Matrixf const& m) override;
    void clear(osg::Vec4f const& color) override;

    void drawQuads(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors, int count) override;
    void drawGeometry(rastDrawState const& state, rastGeometryId geometry, int primitive, int count,
                      int first) override;

    void endRedraw() override;
    void endFrame() override;
    rastFrameStats getFrameStats() const override { return stats_; }
    void resetFrameStats() override { stats_ = {}; }

private:
    struct Texture {
        int width = 0, height = 0, layers = 0;
        bool isArray = false;
        rastPixelFormat format = rastPixelFormat::RGBA8;
        bool premultiplied = false;  // the colour texture of a frame buffer
        bool mipsReady = false;
    };
    struct Geometry {
        uint32_t vertexBuffer = 0, indexBuffer = 0;
        int vertexCount = 0, indexCount = 0;
    };
    struct FrameBuffer {
        uint32_t frameBuffer = 0;  // holds the colour texture
        uint32_t msaaFrameBuffer = 0, msaaColor = 0;  // drawn into when multisampled
        rastTextureId texture = 0;
        int width = 0, height = 0;
        bool mips = false;
    };
    // A vertex of a merged batch: position moved by the model-view (z is
    // where that puts the flat picture), colour times the draw state's, the
    // clip in GL window coordinates and the texture slot, -1 for none.
    struct MergedVertex {
        float x = 0, y = 0, z = 0;
        float u = 0, v = 0;
        osg::Vec4f color;
        float clip[4] = {0, 0, 0, 0};
        int32_t slot = -1;
    };
    // A texture unit of a merged batch.
    struct Slot {
        rastTextureId texture = 0;
        int sampler = 0;
    };
    static constexpr int kMergedUnits = 8;
    // Where drawing goes now.
    struct Target {
        uint32_t drawFrameBuffer = 0;
        int width = 0, height = 0;
        bool topDown = false;
    };

    bool createBuiltins_();
    void destroyAll_();
    Target getTarget_() const;
    rastFrameBufferId getBoundId_() const { return bindStack_.empty() ? 0 : bindStack_.back(); }
    void bindTarget_();
    void bindFrameBuffer_(rastFrameBufferId id, bool keep);
    void leaveTarget_(rastFrameBufferId id);
    void applyViewport_();
    void applyScissor_();
    // Brings GL's scissor back to the clip in force, after a merged batch turned it off.
    void syncScissor_();
    // Converts a rectangle in target pixels (top-left origin) into GL's x, y, width, height.
    void toGlRect_(osg::Recti const& rect, int out[4]) const;

    void flush_();
    void ensureQuadIndices_(int quads);

    // Uniform batches: one draw state, the model-view and the scissor as GL holds them.
    void drawUniform_(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors, int count);
    void appendQuads_(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors, int count);
    void flushUniform_(int quads);

    // Merged batches (see the class comment).
    bool createMerged_();
    bool canMerge_(rastDrawState const& state, Texture const* texture) const;
    void drawMerged_(rastDrawState const& state, Texture const* texture, rastQuad const* quads,
                     osg::Vec4f const* colors, int count);
    bool sameMergedKey_(rastDrawState const& state) const;
    // The unit of `texture` with `sampler` in the batch, taking a free one; flushes when none is left.
    int findSlot_(rastTextureId texture, int sampler);
    void appendMerged_(rastDrawState const& state, int slot, rastQuad const* quads, osg::Vec4f const* colors,
                       int count);
    // The clip in force in GL window coordinates: x, y, width, height.
    void mergedClip_(float out[4]) const;
    // The merged program for batches of `units` textures, built when first asked for; null if it does not build.
    rastGlProgram* getMergedProgram_(int units);
    void flushMerged_(int quads);
    void issueMerged_(rastGlProgram const& program, int quads);
    void bindSlots_(int32_t premultipliedLocation);
    // Binds the program, texture and sampler of `state` and sets the uniforms. Null when nothing can be drawn.
    rastGlProgram* applyDrawState_(rastDrawState const& state);
    void bindTexture_(rastDrawState const& state, Texture& texture, rastGlProgram& program);
    static int samplerIndex_(int sampler);
    void generateMips_(rastTextureId id, Texture& texture);
    Texture* findTexture_(rastTextureId id);
    void uploadGeometry_(Geometry& geometry, rastVertex const* vertices, int vertexCount, int const* indices,
                         int indexCount);

    bool valid_ = false;
    bool batching_ = true;
    std::string assetDir_;
    rastFrameStats stats_;

    // The built-in programs by texture kind (none, 2-D, array), and effect programs by id.
    std::unique_ptr<rastGlProgram> builtins_[3];
    std::unordered_map<rastProgramId, std::unique_ptr<rastGlProgram>> programs_;
    uint32_t samplers_[3] = {0, 0, 0};  // linear, nearest, trilinear
    uint32_t vertexArray_ = 0;

    std::unordered_map<rastTextureId, Texture> textures_;
    std::unordered_map<rastGeometryId, Geometry> geometries_;
    std::unordered_map<rastFrameBufferId, FrameBuffer> frameBuffers_;
    rastGeometryId nextGeometry_ = 1;

    // The quad batch waiting to be drawn, and the buffers it goes out through.
    // A merged batch fills merged_, a uniform one batch_; batchState_ holds
    // the first state of a merged batch, whose key it is.
    std::vector<rastVertex> batch_;
    std::vector<MergedVertex> merged_;
    rastDrawState batchState_;
    int batchQuads_ = 0;
    bool merging_ = false;
    Slot slots_[kMergedUnits];
    int slotCount_ = 0;
    uint32_t quadVertexBuffer_ = 0, quadIndexBuffer_ = 0;
    int quadIndexCapacity_ = 0;  // in quads
    std::unique_ptr<rastGlProgram> mergedPrograms_[kMergedUnits + 1];  // by the number of texture units used
    uint32_t mergedVertexArray_ = 0, mergedVertexBuffer_ = 0;

    uint32_t defaultFrameBuffer_ = 0;
    int defaultWidth_ = 0, defaultHeight_ = 0;
    // Frame buffers entered and not yet left, innermost last; empty for the default target.
    std::vector<rastFrameBufferId> bindStack_;
    osg::Recti viewport_{0, 0, 0, 0};
    bool scissorOn_ = false;
    osg::Recti scissor_{0, 0, 0, 0};
    bool scissorApplied_ = false;  // whether GL's scissor is the clip above
    osg::Matrixf projection_;
    osg::Matrixf modelView_;
    bool modelViewAffine_ = true;  // bottom row 0, 0, 0, 1: merged batches can fold it in
};
