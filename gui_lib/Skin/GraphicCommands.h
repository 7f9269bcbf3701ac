#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Export.h"
#include "orm/Allocator.h"
#include "osg/Matrixf.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"
#include "rast/Geometry.h"
#include "rast/Renderer.h"
#include "rast/ShaderQuads.h"
#include "rast/TextString.h"

class rastFrameBuffer;
class rastTexture;

namespace gui {

// One recorded renderer call. Replaying a recording is: `doRedraw` on every
// command (fills renderer objects, renders targets), then `draw` on every
// command (issues the calls), then `release` (back to the pool).
class VUREL_EXPORT GraphicCommand {
public:
    GraphicCommand();
    virtual void doRedraw() = 0;
    virtual void draw() = 0;
    virtual void release() = 0;
    virtual ~GraphicCommand();

    int getId() const { return id; }
    // Every command ever built, in order of construction.
    static orm::vector<GraphicCommand*> const& getRegistry();

    int32_t id;
};

// The pool of one command type: `all` holds every instance ever made, `free`
// those ready to be taken. Instances live until the process ends.
template <class T>
struct GraphicCommandPool {
    orm::vector<T*> all;
    orm::vector<T*> free;
};

// Pooling mix-in of the concrete commands. The pools live in the library
// (every instantiation is explicit there), so the application and the
// library share one pool per type.
template <class T>
class VUREL_EXPORT SimpleGraphicCommand : public GraphicCommand {
public:
    // The most recently released instance, or a new one.
    static T* take();
    // Back to the pool; types with something to clean up do it first.
    void release() override;
    // Logs the pool's counts under "VUREL" at level 64.
    static void stat();
    static GraphicCommandPool<T>& pool();
};

// One step of a matrix command: a kind and up to four floats.
struct GraphicCommandMatrixOp {
    int32_t kind = 0;
    float a = 0, b = 0, c = 0, d = 0;
};

class VUREL_EXPORT GraphicCommandProjectionMatrix : public SimpleGraphicCommand<GraphicCommandProjectionMatrix> {
public:
    enum Kind : int32_t { Ortho2D = 1, Push = 2, Pop = 3 };

    GraphicCommandProjectionMatrix();
    void set(orm::vector<GraphicCommandMatrixOp> const& list);
    void addOp(int32_t kind, float a = 0, float b = 0, float c = 0, float d = 0);

    void doRedraw() override {}
    void draw() override;
    void release() override;

    orm::vector<GraphicCommandMatrixOp> ops;
};

class VUREL_EXPORT GraphicCommandModelViewMatrix : public SimpleGraphicCommand<GraphicCommandModelViewMatrix> {
public:
    enum Kind : int32_t {
        SetIdentity = 1,
        MakeIdentity = 2,
        SetTranslate = 3,  // x, y, z
        MakeTranslate = 4,
        SetRotate = 5,  // axis x, y, z, angle
        MakeRotate = 6,
        Push = 7,
        Pop = 8,
    };

    GraphicCommandModelViewMatrix();
    void set(orm::vector<GraphicCommandMatrixOp> const& list);
    void addOp(int32_t kind, float a = 0, float b = 0, float c = 0, float d = 0);

    void doRedraw() override {}
    // Works on a copy of the renderer's matrix; `set` kinds apply the copy.
    void draw() override;
    void release() override;

    orm::vector<GraphicCommandMatrixOp> ops;
};

class VUREL_EXPORT GraphicCommandSetModelViewMatrix
    : public SimpleGraphicCommand<GraphicCommandSetModelViewMatrix> {
public:
    void set(osg::Matrixf const& m) { matrix = m; }
    void doRedraw() override {}
    void draw() override;

    osg::Matrixf matrix;
};

class VUREL_EXPORT GraphicCommandPreMultModelViewMatrix
    : public SimpleGraphicCommand<GraphicCommandPreMultModelViewMatrix> {
public:
    void set(osg::Matrixf const& m) { matrix = m; }
    void doRedraw() override {}
    // The renderer's matrix M becomes `matrix` * M.
    void draw() override;

    osg::Matrixf matrix;
};

class VUREL_EXPORT GraphicCommandPushShaderTechnique
    : public SimpleGraphicCommand<GraphicCommandPushShaderTechnique> {
public:
    void set(int technique) { type = technique; }
    void doRedraw() override {}
    void draw() override;

    int32_t type = rastRenderer::TechniqueNormal;
};

class VUREL_EXPORT GraphicCommandPopShaderTechnique : public SimpleGraphicCommand<GraphicCommandPopShaderTechnique> {
public:
    void set() {}
    void doRedraw() override {}
    void draw() override;
};

class VUREL_EXPORT GraphicCommandSetShaderTechnique : public SimpleGraphicCommand<GraphicCommandSetShaderTechnique> {
public:
    void set(int technique) { type = technique; }
    void doRedraw() override {}
    // Resets a technique in force, then sets a non-zero one.
    void draw() override;

    int32_t type = rastRenderer::TechniqueNone;
};

class VUREL_EXPORT GraphicCommandSetTextureFiltering
    : public SimpleGraphicCommand<GraphicCommandSetTextureFiltering> {
public:
    void set(int textureSampler) { sampler = textureSampler; }
    void doRedraw() override {}
    void draw() override;

    int32_t sampler = rastRenderer::SamplerLinear;
};

class VUREL_EXPORT GraphicCommandPushClipRect : public SimpleGraphicCommand<GraphicCommandPushClipRect> {
public:
    void set(osg::Recti const& r) { rect = r; }
    void doRedraw() override {}
    void draw() override;

    osg::Recti rect;
};

class VUREL_EXPORT GraphicCommandPopClipRect : public SimpleGraphicCommand<GraphicCommandPopClipRect> {
public:
    void set() {}
    void doRedraw() override {}
    void draw() override;
};

class VUREL_EXPORT GraphicCommandPushViewport : public SimpleGraphicCommand<GraphicCommandPushViewport> {
public:
    void set(osg::Recti const& r) { rect = r; }
    void doRedraw() override {}
    void draw() override;

    osg::Recti rect;
};

class VUREL_EXPORT GraphicCommandPopViewport : public SimpleGraphicCommand<GraphicCommandPopViewport> {
public:
    void set() {}
    void doRedraw() override {}
    void draw() override;
};

class VUREL_EXPORT GraphicCommandSetOpacity : public SimpleGraphicCommand<GraphicCommandSetOpacity> {
public:
    void set(float value) { opacity = value; }
    void doRedraw() override {}
    void draw() override;

    float opacity = 1.0f;
};

class VUREL_EXPORT GraphicCommandSetScale : public SimpleGraphicCommand<GraphicCommandSetScale> {
public:
    void set(float value) { scale = value; }
    void doRedraw() override {}
    void draw() override;

    float scale = 1.0f;
};

class VUREL_EXPORT GraphicCommandShiftPosition : public SimpleGraphicCommand<GraphicCommandShiftPosition> {
public:
    void set(float dx, float dy) {
        x = dx;
        y = dy;
    }
    void doRedraw() override {}
    // Relative to the shift in force, not a stack.
    void draw() override;

    float x = 0, y = 0;
};

class VUREL_EXPORT GraphicCommandDrawBkg : public SimpleGraphicCommand<GraphicCommandDrawBkg> {
public:
    static constexpr int colorCount = 4 * rastShaderBkgQuads::maxQuads;

    // `rgba` holds one colour per cell (36 floats); null draws white cells.
    void set(rastShaderBkgQuads const& bkgQuads, float const* rgba);
    void doRedraw() override {}
    void draw() override;

    float colors[colorCount] = {};
    rastShaderBkgQuads quads;
};

class VUREL_EXPORT GraphicCommandDrawQuads : public SimpleGraphicCommand<GraphicCommandDrawQuads> {
public:
    // `batch` -1 draws every batch; `sampler` 0, 1 or 2 overrides the filtering.
    void set(rastShaderQuads const& shaderQuads, osg::Vec4f const& quadColor, int textureSampler, int batchIndex);
    void doRedraw() override {}
    void draw() override;

    int32_t sampler = -1;
    int32_t batch = -1;
    osg::Vec4f color{1, 1, 1, 1};
    rastShaderQuads quads;
};

class VUREL_EXPORT GraphicCommandDrawText : public SimpleGraphicCommand<GraphicCommandDrawText> {
public:
    GraphicCommandDrawText();
    // Deep copies into strings of the text string pool; `textColor` null
    // keeps each string's own colour.
    void set(rastTextString const* string, osg::Vec4f const* textColor);
    void set(orm::vector<rastTextString*> const& list, osg::Vec4f const* textColor);
    void doRedraw() override {}
    void draw() override;
    void release() override;

    osg::Vec4f color{1, 1, 1, 1};
    bool hasColor = false;
    orm::vector<rastTextString*> strings;
};

class VUREL_EXPORT GraphicCommandDrawGeometry : public SimpleGraphicCommand<GraphicCommandDrawGeometry> {
public:
    GraphicCommandDrawGeometry();
    ~GraphicCommandDrawGeometry() override;
    void set(orm::vector<rastVertex> const& vertexList, orm::vector<int> const& indexList, int primitiveType,
             int primitiveCount, rastTexture const* geometryTexture);
    // Creates the geometry on first use and updates it after that.
    void doRedraw() override;
    void draw() override;

    std::unique_ptr<rastGeometry> geometry;
    rastTexture const* texture = nullptr;
    int32_t primitive = -1;
    int32_t count = 0;
    orm::vector<rastVertex> vertices;
    orm::vector<int> indices;
};

class VUREL_EXPORT GraphicCommandDrawFunc : public SimpleGraphicCommand<GraphicCommandDrawFunc> {
public:
    void set(std::function<void()> drawFn, osg::Vec2i const& drawSize,
             std::function<void(osg::Vec2i const&)> redrawFn);
    void doRedraw() override;
    void draw() override;

    osg::Vec2i size;
    std::function<void()> drawFunc;
    std::function<void(osg::Vec2i const&)> redrawFunc;
};

class VUREL_EXPORT GraphicCommandDrawToTarget : public SimpleGraphicCommand<GraphicCommandDrawToTarget> {
public:
    GraphicCommandDrawToTarget();
    ~GraphicCommandDrawToTarget() override;
    // Copies the pointers; the nested commands belong to this one until `release`.
    void set(std::shared_ptr<rastFrameBuffer> frameBuffer, osg::Vec2i const& drawSize,
             orm::vector<GraphicCommand*> const& list);
    // Replays the nested commands into the target.
    void doRedraw() override;
    // Nothing: the target was filled at doRedraw.
    void draw() override {}
    void release() override;

    std::shared_ptr<rastFrameBuffer> target;
    osg::Vec2i size;
    orm::vector<GraphicCommand*> commands;
};

class VUREL_EXPORT GraphicCommandParse : public SimpleGraphicCommand<GraphicCommandParse> {
public:
    void set(std::function<void()> f) { func = std::move(f); }
    void doRedraw() override {}
    void draw() override;

    std::function<void()> func;
};

// The shared pool of text string copies held by GraphicCommandDrawText.
class VUREL_EXPORT GraphicCommandTextStringPool {
public:
    static rastTextString* take();
    static void giveBack(rastTextString* string);
    static int getAllCount();
    static int getFreeCount();
};

// A recorded draw list. It does not own the commands: whoever replays it
// releases them; `clear` only forgets them.
//
// Pools hand out the instance released last. Releasing a replayed list from
// its end to its start therefore gives every instance the same role in the
// next identical frame, so the buffers inside commands stop growing after
// one frame; releasing from the start needs two frames to settle.
class VUREL_EXPORT GraphicCommands {
public:
    GraphicCommands();
    ~GraphicCommands();
    GraphicCommands(GraphicCommands const&) = delete;
    GraphicCommands& operator=(GraphicCommands const&) = delete;

    // Projection is recorded through GraphicCommandProjectionMatrixGuard only.
    void setProjectionMatrix(osg::Matrixf const& m);
    void setModelViewMatrix(osg::Matrixf const& m);
    void preMultModelViewMatrix(osg::Matrixf const& m);
    void pushClipRect(osg::Recti const& rect);
    void popClipRect();
    void pushViewport(osg::Recti const& rect);
    void popViewport();
    void setOpacity(float opacity);
    void setScale(float scale);
    void shiftPosition(float x, float y);
    void drawBkg(rastShaderBkgQuads const& quads, float const* colors);
    void drawQuads(rastShaderQuads const& quads, osg::Vec4f const& color, int sampler, int batch);
    void drawText(rastTextString* string, osg::Vec4f const* color);
    void drawText(orm::vector<rastTextString*> const& strings, osg::Vec4f const* color);
    void drawFunc(std::function<void()> draw, osg::Vec2i const& size, std::function<void(osg::Vec2i const&)> redraw);
    void drawToTarget(std::shared_ptr<rastFrameBuffer> target, osg::Vec2i const& size,
                      orm::vector<GraphicCommand*> const& commands);
    void parse(std::function<void()> func);

    void add(GraphicCommand* command);
    void clear();
    orm::vector<GraphicCommand*> const& getCommands() const { return commands; }
    orm::vector<GraphicCommandParse*> const& getParseCommands() const { return parseCommands; }

    // The last opacity and scale recorded by any list; the guards restore these.
    static float getCurrentOpacity();
    static float getCurrentScale();

private:
    orm::vector<GraphicCommand*> commands;
    orm::vector<GraphicCommandParse*> parseCommands;
};

// Scope guards of the recorded road, twins of the renderer's guards. They
// record on construction and destruction and never touch the renderer.

class VUREL_EXPORT GraphicCommandModelViewMatrixGuard {
public:
    explicit GraphicCommandModelViewMatrixGuard(GraphicCommands& commands);
    ~GraphicCommandModelViewMatrixGuard();
    GraphicCommandModelViewMatrixGuard(GraphicCommandModelViewMatrixGuard const&) = delete;
    GraphicCommandModelViewMatrixGuard& operator=(GraphicCommandModelViewMatrixGuard const&) = delete;

    // `make*` steps wait in the pending command for a later `set*`; any left
    // at the end are dropped.
    GraphicCommandModelViewMatrixGuard& makeIdentity();
    GraphicCommandModelViewMatrixGuard& makeTranslate(float x, float y, float z);
    GraphicCommandModelViewMatrixGuard& makeRotate(float angle, float x, float y, float z);
    GraphicCommandModelViewMatrixGuard& setIdentity();
    GraphicCommandModelViewMatrixGuard& setTranslate(float x, float y, float z);
    GraphicCommandModelViewMatrixGuard& setRotate(float angle, float x, float y, float z);

private:
    GraphicCommandModelViewMatrixGuard& flush_();

    GraphicCommands& commands_;
    GraphicCommandModelViewMatrix* pending_;
};

class VUREL_EXPORT GraphicCommandProjectionMatrixGuard {
public:
    explicit GraphicCommandProjectionMatrixGuard(GraphicCommands& commands);
    ~GraphicCommandProjectionMatrixGuard();
    GraphicCommandProjectionMatrixGuard(GraphicCommandProjectionMatrixGuard const&) = delete;
    GraphicCommandProjectionMatrixGuard& operator=(GraphicCommandProjectionMatrixGuard const&) = delete;

    GraphicCommandProjectionMatrixGuard& makeOrtho2D(float left, float right, float bottom, float top);

private:
    GraphicCommands& commands_;
};

class VUREL_EXPORT GraphicCommandShaderTechniqueGuard {
public:
    GraphicCommandShaderTechniqueGuard(GraphicCommands& commands, int type);
    ~GraphicCommandShaderTechniqueGuard();
    GraphicCommandShaderTechniqueGuard(GraphicCommandShaderTechniqueGuard const&) = delete;
    GraphicCommandShaderTechniqueGuard& operator=(GraphicCommandShaderTechniqueGuard const&) = delete;

private:
    GraphicCommands& commands_;
};

class VUREL_EXPORT GraphicCommandOpacityGuard {
public:
    GraphicCommandOpacityGuard(GraphicCommands& commands, float opacity);
    ~GraphicCommandOpacityGuard();
    GraphicCommandOpacityGuard(GraphicCommandOpacityGuard const&) = delete;
    GraphicCommandOpacityGuard& operator=(GraphicCommandOpacityGuard const&) = delete;

private:
    GraphicCommands& commands_;
    float saved_;
};

class VUREL_EXPORT GraphicCommandSetScaleGuard {
public:
    GraphicCommandSetScaleGuard(GraphicCommands& commands, float scale);
    ~GraphicCommandSetScaleGuard();
    GraphicCommandSetScaleGuard(GraphicCommandSetScaleGuard const&) = delete;
    GraphicCommandSetScaleGuard& operator=(GraphicCommandSetScaleGuard const&) = delete;

private:
    GraphicCommands& commands_;
    float saved_;
};

class VUREL_EXPORT GraphicCommandShiftPositionGuard {
public:
    GraphicCommandShiftPositionGuard(GraphicCommands& commands, float x, float y);
    ~GraphicCommandShiftPositionGuard();
    GraphicCommandShiftPositionGuard(GraphicCommandShiftPositionGuard const&) = delete;
    GraphicCommandShiftPositionGuard& operator=(GraphicCommandShiftPositionGuard const&) = delete;

private:
    GraphicCommands& commands_;
    float x_, y_;
};

class VUREL_EXPORT GraphicCommandViewportGuard {
public:
    GraphicCommandViewportGuard(GraphicCommands& commands, osg::Recti const& rect);
    ~GraphicCommandViewportGuard();
    GraphicCommandViewportGuard(GraphicCommandViewportGuard const&) = delete;
    GraphicCommandViewportGuard& operator=(GraphicCommandViewportGuard const&) = delete;

private:
    GraphicCommands& commands_;
};

class VUREL_EXPORT GraphicCommandClipRectGuard {
public:
    GraphicCommandClipRectGuard(GraphicCommands& commands, osg::Recti const& rect);
    ~GraphicCommandClipRectGuard();
    GraphicCommandClipRectGuard(GraphicCommandClipRectGuard const&) = delete;
    GraphicCommandClipRectGuard& operator=(GraphicCommandClipRectGuard const&) = delete;

private:
    GraphicCommands& commands_;
};

}  // namespace gui
