#pragma once

#include <string>
#include <vector>

#include "Export.h"
#include "rast/Backend.h"

// A backend that turns every call into a readable event with its arguments,
// for tests: "pushClipRect 10 10 90 40", "drawQuads tex=3 n=9". Draw calls also
// keep their quads, colours and state for closer checks.
class VUREL_EXPORT rastRecordingBackend : public rastBackend {
public:
    struct Draw {
        size_t eventIndex = 0;
        rastDrawState state;
        std::vector<rastQuad> quads;
        std::vector<osg::Vec4f> colors;  // empty when the draw passed none
    };

    char const* getName() const override { return "recording"; }

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

    std::vector<std::string> const& getEvents() const { return events_; }
    std::vector<Draw> const& getDraws() const { return draws_; }
    // Only events that start with one of the given prefixes, e.g. {"draw", "pushClip", "popClip"}.
    std::vector<std::string> getEvents(std::vector<std::string> const& prefixes) const;
    size_t countEvents(std::string const& prefix) const;
    void clearEvents();
    // Programs whose names are listed here load; all others fail, as missing files would.
    void setAvailablePrograms(std::vector<std::string> names) { programs_ = std::move(names); }

private:
    void add_(char const* format, ...) __attribute__((format(printf, 2, 3)));
    static std::string describeState_(rastDrawState const& state);

    uint32_t next_ = 1;
    std::vector<std::string> events_;
    std::vector<Draw> draws_;
    std::vector<std::string> programs_;
    rastFrameStats stats_;
};
