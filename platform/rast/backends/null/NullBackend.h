#pragma once

#include "Export.h"
#include "rast/Backend.h"

// A backend that does nothing but hand out object names and count draws:
// the toolkit's logic runs, and its cost is measured, without any GPU.
class VUREL_EXPORT rastNullBackend : public rastBackend {
public:
    char const* getName() const override { return "null"; }

    rastTextureId createTexture(int, int, rastPixelFormat, void const*) override { return next_++; }
    void updateTexture(rastTextureId, int, int, int, int, rastPixelFormat, void const*) override {}
    rastTextureId createTextureArray(int, int, int) override { return next_++; }
    void updateTextureLayer(rastTextureId, int, void const*) override {}
    void destroyTexture(rastTextureId) override {}

    rastGeometryId createGeometry(rastVertex const*, int, int const*, int) override { return next_++; }
    void updateGeometry(rastGeometryId, rastVertex const*, int, int const*, int) override {}
    void destroyGeometry(rastGeometryId) override {}

    rastFrameBufferId createFrameBuffer(int, int, int, bool, rastTextureId& colorTexture) override {
        colorTexture = next_++;
        return next_++;
    }
    void destroyFrameBuffer(rastFrameBufferId) override {}
    void bindFrameBuffer(rastFrameBufferId) override {}
    bool canKeepFrameBuffer() const override { return true; }
    void bindFrameBufferKeeping(rastFrameBufferId) override {}

    rastProgramId loadProgram(char const*) override { return 0; }
    void setProgramParameter(rastProgramId, char const*, float const*, int) override {}
    void destroyProgram(rastProgramId) override {}

    void setViewport(osg::Recti const&) override {}
    void pushClipRect(osg::Recti const&) override {}
    void popClipRect(osg::Recti const*) override {}
    void setProjectionMatrix(osg::Matrixf const&) override {}
    void setModelViewMatrix(osg::Matrixf const&) override {}
    void clear(osg::Vec4f const&) override {}

    void drawQuads(rastDrawState const&, rastQuad const*, osg::Vec4f const*, int count) override {
        ++stats_.drawCalls;
        stats_.quads += count;
        stats_.vertices += count * 4;
    }
    void drawGeometry(rastDrawState const&, rastGeometryId, int, int count, int) override {
        ++stats_.drawCalls;
        stats_.vertices += count;
    }

    void endRedraw() override {}
    void endFrame() override {}
    rastFrameStats getFrameStats() const override { return stats_; }
    void resetFrameStats() override { stats_ = {}; }

private:
    uint32_t next_ = 1;
    rastFrameStats stats_;
};
