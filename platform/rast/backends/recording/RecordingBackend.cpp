#include "rast/backends/recording/RecordingBackend.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {

char const* formatName(rastPixelFormat f) { return f == rastPixelFormat::A8 ? "a8" : "rgba"; }

}  // namespace

void rastRecordingBackend::add_(char const* format, ...) {
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    events_.emplace_back(text);
}

std::string rastRecordingBackend::describeState_(rastDrawState const& s) {
    // Only what differs from the defaults, so events stay short.
    std::string out;
    char part[128];
    auto put = [&](char const* fmt, auto... values) {
        std::snprintf(part, sizeof part, fmt, values...);
        out += part;
    };
    if (s.textureIsArray)
        put(" array");
    if (s.sampler >= 0)
        put(" sampler=%d", s.sampler);
    if (s.technique != 0)
        put(" tech=%d", s.technique);
    if (s.program != 0)
        put(" program=%u", s.program);
    if (s.scale != 1.0f)
        put(" scale=%g", double(s.scale));
    if (s.opacity != 1.0f)
        put(" opacity=%g", double(s.opacity));
    if (s.gamma != 1.0f)
        put(" gamma=%g", double(s.gamma));
    if (s.intensity != 1.0f)
        put(" intensity=%g", double(s.intensity));
    if (s.shift.x != 0.0f || s.shift.y != 0.0f)
        put(" shift=%g,%g", double(s.shift.x), double(s.shift.y));
    if (!(s.color == osg::Vec4f(1, 1, 1, 1)))
        put(" color=%g,%g,%g,%g", double(s.color.x), double(s.color.y), double(s.color.z), double(s.color.w));
    return out;
}

rastTextureId rastRecordingBackend::createTexture(int width, int height, rastPixelFormat format, void const*) {
    rastTextureId const id = next_++;
    add_("createTexture id=%u %dx%d %s", id, width, height, formatName(format));
    return id;
}

void rastRecordingBackend::updateTexture(rastTextureId id, int x, int y, int width, int height,
                                         rastPixelFormat format, void const*) {
    add_("updateTexture id=%u %d %d %dx%d %s", id, x, y, width, height, formatName(format));
}

rastTextureId rastRecordingBackend::createTextureArray(int width, int height, int layers) {
    rastTextureId const id = next_++;
    add_("createTextureArray id=%u %dx%d layers=%d", id, width, height, layers);
    return id;
}

void rastRecordingBackend::updateTextureLayer(rastTextureId id, int layer, void const*) {
    add_("updateTextureLayer id=%u layer=%d", id, layer);
}

void rastRecordingBackend::destroyTexture(rastTextureId id) { add_("destroyTexture id=%u", id); }

rastGeometryId rastRecordingBackend::createGeometry(rastVertex const*, int vertexCount, int const*, int indexCount) {
    rastGeometryId const id = next_++;
    add_("createGeometry id=%u v=%d i=%d", id, vertexCount, indexCount);
    return id;
}

void rastRecordingBackend::updateGeometry(rastGeometryId id, rastVertex const*, int vertexCount, int const*,
                                          int indexCount) {
    add_("updateGeometry id=%u v=%d i=%d", id, vertexCount, indexCount);
}

void rastRecordingBackend::destroyGeometry(rastGeometryId id) { add_("destroyGeometry id=%u", id); }

rastFrameBufferId rastRecordingBackend::createFrameBuffer(int width, int height, int msaa, bool mips,
                                                          rastTextureId& colorTexture) {
    colorTexture = next_++;
    rastFrameBufferId const id = next_++;
    add_("createFrameBuffer id=%u %dx%d msaa=%d mips=%d tex=%u", id, width, height, msaa, mips ? 1 : 0,
         colorTexture);
    return id;
}

void rastRecordingBackend::destroyFrameBuffer(rastFrameBufferId id) { add_("destroyFrameBuffer id=%u", id); }

void rastRecordingBackend::bindFrameBuffer(rastFrameBufferId id) { add_("bindFrameBuffer id=%u", id); }

void rastRecordingBackend::bindFrameBufferKeeping(rastFrameBufferId id) { add_("bindFrameBuffer id=%u keep", id); }

rastProgramId rastRecordingBackend::loadProgram(char const* name) {
    bool const available = std::find(programs_.begin(), programs_.end(), name) != programs_.end();
    rastProgramId const id = available ? next_++ : 0;
    add_("loadProgram %s id=%u", name, id);
    return id;
}

void rastRecordingBackend::setProgramParameter(rastProgramId program, char const* name, float const* values,
                                               int count) {
    add_("setProgramParameter program=%u %s=%g n=%d", program, name, count > 0 ? double(values[0]) : 0.0, count);
}

void rastRecordingBackend::destroyProgram(rastProgramId id) { add_("destroyProgram id=%u", id); }

void rastRecordingBackend::setViewport(osg::Recti const& r) {
    add_("viewport %d %d %d %d", r.min.x, r.min.y, r.max.x, r.max.y);
}

void rastRecordingBackend::pushClipRect(osg::Recti const& r) {
    add_("pushClipRect %d %d %d %d", r.min.x, r.min.y, r.max.x, r.max.y);
}

void rastRecordingBackend::popClipRect(osg::Recti const* r) {
    if (r)
        add_("popClipRect %d %d %d %d", r->min.x, r->min.y, r->max.x, r->max.y);
    else
        add_("popClipRect off");
}

void rastRecordingBackend::setProjectionMatrix(osg::Matrixf const& m) {
    add_("projection %g %g %g %g", double(m(0, 0)), double(m(1, 1)), double(m(0, 3)), double(m(1, 3)));
}

void rastRecordingBackend::setModelViewMatrix(osg::Matrixf const& m) {
    osg::Matrixf linear = m;
    linear(0, 3) = linear(1, 3) = linear(2, 3) = 0.0f;
    add_("modelView %g %g%s", double(m(0, 3)), double(m(1, 3)), linear.isIdentity() ? "" : " rotated");
}

void rastRecordingBackend::clear(osg::Vec4f const& c) {
    add_("clear %g %g %g %g", double(c.x), double(c.y), double(c.z), double(c.w));
}

void rastRecordingBackend::drawQuads(rastDrawState const& state, rastQuad const* quads, osg::Vec4f const* colors,
                                     int count) {
    add_("drawQuads tex=%u n=%d%s", state.texture, count, describeState_(state).c_str());
    Draw d;
    d.eventIndex = events_.size() - 1;
    d.state = state;
    d.quads.assign(quads, quads + count);
    if (colors)
        d.colors.assign(colors, colors + count);
    draws_.push_back(std::move(d));
    ++stats_.drawCalls;
    stats_.quads += count;
    stats_.vertices += count * 4;
}

void rastRecordingBackend::drawGeometry(rastDrawState const& state, rastGeometryId geometry, int primitive,
                                        int count, int first) {
    add_("drawGeometry geo=%u prim=%d count=%d first=%d tex=%u%s", geometry, primitive, count, first, state.texture,
         describeState_(state).c_str());
    ++stats_.drawCalls;
    stats_.vertices += count;
}

void rastRecordingBackend::endRedraw() { add_("endRedraw"); }

void rastRecordingBackend::endFrame() { add_("endFrame"); }

std::vector<std::string> rastRecordingBackend::getEvents(std::vector<std::string> const& prefixes) const {
    std::vector<std::string> out;
    for (auto const& e : events_)
        for (auto const& p : prefixes)
            if (e.compare(0, p.size(), p) == 0) {
                out.push_back(e);
                break;
            }
    return out;
}

size_t rastRecordingBackend::countEvents(std::string const& prefix) const {
    return static_cast<size_t>(std::count_if(events_.begin(), events_.end(), [&](std::string const& e) {
        return e.compare(0, prefix.size(), prefix) == 0;
    }));
}

void rastRecordingBackend::clearEvents() {
    events_.clear();
    draws_.clear();
}
