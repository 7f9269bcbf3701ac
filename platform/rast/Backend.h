#pragma once

#include "Export.h"
#include "rast/Types.h"

// The GPU side of the renderer: the one interface a backend implements. The
// renderer objects keep all CPU state (stacks, quad lists, glyph layouts) and
// call down here to create, update, draw and destroy. A backend knows nothing
// of widgets.
class VUREL_EXPORT rastBackend {
public:
    virtual ~rastBackend() = default;

    virtual char const* getName() const = 0;

    // Textures. `pixels` may be null for an uninitialised texture.
    virtual rastTextureId createTexture(int width, int height, rastPixelFormat format, void const* pixels) = 0;
    virtual void updateTexture(rastTextureId id, int x, int y, int width, int height, rastPixelFormat format,
                               void const* pixels) = 0;
    virtual rastTextureId createTextureArray(int width, int height, int layers) = 0;
    virtual void updateTextureLayer(rastTextureId id, int layer, void const* rgbaPixels) = 0;
    virtual void destroyTexture(rastTextureId id) = 0;

    // Geometry: vertex and index buffers.
    virtual rastGeometryId createGeometry(rastVertex const* vertices, int vertexCount, int const* indices,
                                          int indexCount) = 0;
    virtual void updateGeometry(rastGeometryId id, rastVertex const* vertices, int vertexCount, int const* indices,
                                int indexCount) = 0;
    virtual void destroyGeometry(rastGeometryId id) = 0;

    // Off-screen targets. `colorTexture` receives the texture that holds the
    // result once the target is unbound.
    virtual rastFrameBufferId createFrameBuffer(int width, int height, int msaa, bool mips,
                                                rastTextureId& colorTexture) = 0;
    virtual void destroyFrameBuffer(rastFrameBufferId id) = 0;
    // 0 binds the default target. Leaving a multisampled or mipmapped target
    // resolves it.
    virtual void bindFrameBuffer(rastFrameBufferId id) = 0;
    // Whether bindFrameBufferKeeping is available: a backend that cannot
    // keep a target's pixels between frames has its targets drawn whole.
    virtual bool canKeepFrameBuffer() const { return false; }
    // As bindFrameBuffer, but a frame buffer entered afresh keeps what it
    // holds, so that part of it can be drawn again.
    virtual void bindFrameBufferKeeping(rastFrameBufferId id) { bindFrameBuffer(id); }

    // Effect programs by name ("PanelFx/guiAlpha.fx"...); 0 when unavailable.
    virtual rastProgramId loadProgram(char const* name) = 0;
    virtual void setProgramParameter(rastProgramId program, char const* name, float const* values, int count) = 0;
    virtual void destroyProgram(rastProgramId id) = 0;

    // Pipeline state.
    virtual void setViewport(osg::Recti const& rect) = 0;
    virtual void pushClipRect(osg::Recti const& effective) = 0;
    // `restored` is the clip now in force, null when clipping is off again.
    virtual void popClipRect(osg::Recti const* restored) = 0;
    virtual void setProjectionMatrix(osg::Matrixf const& m) = 0;
    virtual void setModelViewMatrix(osg::Matrixf const& m) = 0;
    virtual void clear(osg::Vec4f const& color) = 0;

    // Draws. `colors` holds one colour a quad, or is null for white.
    virtual void drawQuads(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors,
                           int count) = 0;
    // `primitive` is a rastGeometry::PrimitiveType value.
    virtual void drawGeometry(rastDrawState const& state, rastGeometryId geometry, int primitive, int count,
                              int first) = 0;

    // Frame bookkeeping: the end of the rebuild stage, and the end of a frame.
    virtual void endRedraw() = 0;
    virtual void endFrame() = 0;
    virtual rastFrameStats getFrameStats() const = 0;
    virtual void resetFrameStats() = 0;
};
