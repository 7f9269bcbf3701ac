#pragma once

#include <memory>

#include "Export.h"
#include "orm/Allocator.h"
#include "rast/Backend.h"
#include "rast/Types.h"

class rastShader;
class rastTextureManager;
class rastFontManager;
class rastGeometry;
class rastFrameBuffer;

// The process-wide 2-D renderer. It owns the CPU-side state of drawing (the
// viewport, projection, model-view, clip and technique stacks, the opacity and
// UI scale) and the services (quad shader, textures, fonts), and passes the
// GPU work to one backend. Stacks keep their capacity, so a steady frame
// allocates nothing.
class VUREL_EXPORT rastRenderer {
public:
    enum TechniqueType : int32_t {
        TechniqueNone = 0,
        TechniqueNormal = 1,
        TechniqueToTarget = 4,  // drawing into a render target
        TechniqueAlternative = 5,
    };
    enum TextureSampler : int32_t {
        SamplerLinear = 0,
        SamplerNearest = 1,
        SamplerMipmap = 2,
    };

    // Makes the process-wide renderer over `backend`; a second call keeps the first.
    static rastRenderer* create(std::unique_ptr<rastBackend> backend);
    static void destroy();
    static rastRenderer* get();

    rastBackend& getBackend() { return *backend_; }
    rastTextureManager* getTextureManager() { return textureManager_.get(); }
    rastFontManager* getFontManager() { return fontManager_.get(); }
    rastShader* getShader() { return shader_.get(); }

    // UI scale: target pixels per toolkit unit.
    void setScale(float scale) { scale_ = scale; }
    float getScale() const { return scale_; }
    // Opacity of all later draws (callers combine nested values themselves).
    void setOpacity(float opacity) { opacity_ = opacity; }
    float getOpacity() const { return opacity_; }

    std::unique_ptr<rastGeometry> createGeometry(orm::vector<rastVertex> const& vertices,
                                                 orm::vector<int> const& indices);
    std::shared_ptr<rastFrameBuffer> createFrameBuffer(osg::Vec2i const& size, int msaa, bool mips);

    void pushViewport(osg::Recti const& rect);
    void popViewport();
    osg::Recti const& getViewport() const { return viewport_; }

    void setProjectionMatrix(osg::Matrixf const& m);
    void pushProjectionMatrix();
    void popProjectionMatrix();
    osg::Matrixf const& getProjectionMatrix() const { return projection_; }

    void getModelViewMatrix(osg::Matrixf& out) const { out = modelView_; }
    osg::Matrixf const& getModelViewMatrix() const { return modelView_; }
    void setModelViewMatrix(osg::Matrixf const& m);
    void pushModelViewMatrix();
    void popModelViewMatrix();

    // Scissor stack. Rectangles come in units, like positions, and are kept in
    // target pixels (times the scale); each is cut to the one below it.
    // Depth and current clip are those of the target being drawn: inside
    // renderTo the clips of the outer target do not count.
    void pushClipRect(osg::Recti const& rect);
    void popClipRect();
    int getClipDepth() const { return static_cast<int>(clipStack_.size() - clipBase_); }
    osg::Recti const* getClipRect() const { return clipStack_.size() > clipBase_ ? &clipStack_.back() : nullptr; }
    // Whether `rect`, in units and placed by the present model-view, lies
    // wholly outside the clip in force, so that drawing in it shows nothing.
    // False whenever that cannot be told cheaply: no clip, or a model-view
    // that is more than a translation.
    bool isClippedAway(osg::Recti const& rect) const;

    void setTextureFiltering(int sampler) { textureFiltering_ = sampler; }
    int getTextureFiltering() const { return textureFiltering_; }

    void setGeometry(rastGeometry const* geometry) { geometry_ = geometry; }
    void drawGeometry(int primitive, int count, int first);

    void setTechnique(int type) { technique_ = type; }
    void resetTechnique() { technique_ = TechniqueNone; }
    int getTechnique() const { return technique_; }
    void pushTechnique(int type);
    void popTechnique();

    // The rebuild stage of a frame has ended (deferred uploads may go now).
    void endRedraw();
    void endFrame();

    // Depths of the state stacks: all 0 between frames when pushes and pops balance.
    int getStackDepth() const;

    // Used by rastFrameBuffer::renderTo: drawing goes to `target` with fresh
    // stacks until the matching end, which restores the outer state. With
    // `keepContents` (see canKeepTargets) the target keeps its pixels.
    void beginRenderTo(rastFrameBuffer& target, bool keepContents = false);
    // Whether a target can keep its pixels, so that a part of it can be drawn again.
    bool canKeepTargets() const { return backend_->canKeepFrameBuffer(); }
    // Fills the clip in force (the whole target without one) with `color`.
    void clear(osg::Vec4f const& color) { backend_->clear(color); }
    void endRenderTo();

    // The draw state of the quad shader for `texture`, from the renderer's and
    // the shader's current values.
    rastDrawState makeDrawState(rastTextureId texture, bool isArray) const;

    // Scope guards of the direct road.
    class VUREL_EXPORT ClipRectGuard {
    public:
        explicit ClipRectGuard(osg::Recti const& rect) { get()->pushClipRect(rect); }
        ~ClipRectGuard() { get()->popClipRect(); }
        ClipRectGuard(ClipRectGuard const&) = delete;
        ClipRectGuard& operator=(ClipRectGuard const&) = delete;
    };

    // Pushes the model-view matrix and works on a local copy of it: `make*`
    // steps change the copy only, `set*` steps change it and apply it.
    // Translations are in toolkit units and multiplied by the UI scale.
    class VUREL_EXPORT ModelViewMatrixGuard {
    public:
        ModelViewMatrixGuard();
        ~ModelViewMatrixGuard();
        ModelViewMatrixGuard(ModelViewMatrixGuard const&) = delete;
        ModelViewMatrixGuard& operator=(ModelViewMatrixGuard const&) = delete;

        ModelViewMatrixGuard& makeIdentity();
        ModelViewMatrixGuard& makeTranslate(float x, float y, float z);
        ModelViewMatrixGuard& makeRotate(float angle, float x, float y, float z);
        ModelViewMatrixGuard& setIdentity() { return makeIdentity().apply(); }
        ModelViewMatrixGuard& setTranslate(float x, float y, float z) { return makeTranslate(x, y, z).apply(); }
        ModelViewMatrixGuard& setRotate(float angle, float x, float y, float z) {
            return makeRotate(angle, x, y, z).apply();
        }

    private:
        ModelViewMatrixGuard& apply();
        osg::Matrixf matrix_;
    };

    class VUREL_EXPORT OpacityGuard {
    public:
        explicit OpacityGuard(float opacity) : saved_(get()->getOpacity()) { get()->setOpacity(opacity); }
        ~OpacityGuard() { get()->setOpacity(saved_); }
        OpacityGuard(OpacityGuard const&) = delete;
        OpacityGuard& operator=(OpacityGuard const&) = delete;

    private:
        float saved_;
    };

    class VUREL_EXPORT ProjectionMatrixGuard {
    public:
        ProjectionMatrixGuard() { get()->pushProjectionMatrix(); }
        ~ProjectionMatrixGuard() { get()->popProjectionMatrix(); }
        ProjectionMatrixGuard(ProjectionMatrixGuard const&) = delete;
        ProjectionMatrixGuard& operator=(ProjectionMatrixGuard const&) = delete;
        // An orthographic projection in toolkit units, multiplied by the UI scale.
        ProjectionMatrixGuard& makeOrtho2D(float left, float right, float bottom, float top);
    };

    class VUREL_EXPORT ShaderTechniqueGuard {
    public:
        explicit ShaderTechniqueGuard(int type) { get()->pushTechnique(type); }
        ~ShaderTechniqueGuard() { get()->popTechnique(); }
        ShaderTechniqueGuard(ShaderTechniqueGuard const&) = delete;
        ShaderTechniqueGuard& operator=(ShaderTechniqueGuard const&) = delete;
    };

    class VUREL_EXPORT ShiftPositionGuard {
    public:
        ShiftPositionGuard(float x, float y);
        ~ShiftPositionGuard();
        ShiftPositionGuard(ShiftPositionGuard const&) = delete;
        ShiftPositionGuard& operator=(ShiftPositionGuard const&) = delete;

    private:
        float x_, y_;
    };

    class VUREL_EXPORT ViewportGuard {
    public:
        explicit ViewportGuard(osg::Recti const& rect) { get()->pushViewport(rect); }
        ~ViewportGuard() { get()->popViewport(); }
        ViewportGuard(ViewportGuard const&) = delete;
        ViewportGuard& operator=(ViewportGuard const&) = delete;
    };

    ~rastRenderer();

private:
    explicit rastRenderer(std::unique_ptr<rastBackend> backend);

    // What a render target saves of the outer state.
    struct SavedTarget {
        rastFrameBufferId frameBuffer;
        osg::Recti viewport;
        osg::Matrixf projection;
        osg::Matrixf modelView;
        int technique;
        size_t viewportDepth, projectionDepth, modelViewDepth, clipDepth, techniqueDepth;
    };

    void applyClip_();
    osg::Recti toPixels_(osg::Recti const& rect) const;

    std::unique_ptr<rastBackend> backend_;
    std::unique_ptr<rastShader> shader_;
    std::unique_ptr<rastTextureManager> textureManager_;
    std::unique_ptr<rastFontManager> fontManager_;

    float scale_ = 1.0f;
    float opacity_ = 1.0f;
    int textureFiltering_ = SamplerLinear;
    int technique_ = TechniqueNone;
    rastGeometry const* geometry_ = nullptr;
    rastFrameBufferId boundFrameBuffer_ = 0;

    osg::Recti viewport_{0, 0, 0, 0};
    osg::Matrixf projection_;
    osg::Matrixf modelView_;
    orm::vector<osg::Recti> viewportStack_;
    orm::vector<osg::Matrixf> projectionStack_;
    orm::vector<osg::Matrixf> modelViewStack_;
    orm::vector<osg::Recti> clipStack_;
    orm::vector<int> techniqueStack_;
    orm::vector<SavedTarget> targetStack_;
    // The clip stack below this depth belongs to an outer target.
    size_t clipBase_ = 0;
};
