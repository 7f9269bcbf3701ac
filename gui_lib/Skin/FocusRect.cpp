#include "Skin/FocusRect.h"

#include <algorithm>

#include "Skin/GraphicCommands.h"
#include "rast/Geometry.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"

namespace gui {

FocusRect::FocusRect() = default;

FocusRect::~FocusRect() = default;

void FocusRect::setBounds(osg::RectImpl<osg::Vec2i> const& value) {
    bounds = value;
    dirty = true;
}

void FocusRect::setColor(osg::Vec4f const& value) {
    color = value;
    dirty = true;
}

void FocusRect::setInsets(Insets const& value) {
    insets = value;
    dirty = true;
}

void FocusRect::addSegment_(float x1, float y1, float x2, float y2) {
    rastVertex v;
    v.color = color;
    v.x = x1;
    v.y = y1;
    indices.push_back(static_cast<int>(vertices.size()));
    vertices.push_back(v);
    v.x = x2;
    v.y = y2;
    indices.push_back(static_cast<int>(vertices.size()));
    vertices.push_back(v);
}

void FocusRect::redraw() {
    if (!dirty)
        return;
    dirty = false;
    vertexDirty = true;
    vertices.clear();
    indices.clear();
    // 64 bits, so that frames near the ends of the int range step safely.
    int64_t const x1 = int64_t(bounds.min.x) + insets.left, y1 = int64_t(bounds.min.y) + insets.top;
    int64_t const x2 = int64_t(bounds.max.x) - insets.right, y2 = int64_t(bounds.max.y) - insets.bottom;
    if (!(color.w > 0) || bounds.isInverted() || x2 - x1 <= 0 || y2 - y1 <= 0) {
        // Nothing to show: doRedraw drops the geometry, make records nothing.
        count = 0;
        return;
    }

    rastRenderer const* renderer = rastRenderer::get();
    float const s = renderer ? renderer->getScale() : 1.0f;
    for (int64_t x = x1; x <= x2;) {
        int64_t const xe = std::min(x + 1, x2);
        addSegment_(float(x) * s, float(y1) * s, float(xe) * s, float(y1) * s);
        addSegment_(float(x) * s, float(y2) * s, float(xe) * s, float(y2) * s);
        x = xe + 1;
    }
    for (int64_t y = y1; y <= y2;) {
        int64_t const ye = std::min(y + 1, y2);
        addSegment_(float(x1) * s, float(y) * s, float(x1) * s, float(ye) * s);
        addSegment_(float(x2) * s, float(y) * s, float(x2) * s, float(ye) * s);
        y = ye + 1;
    }
    count = static_cast<int64_t>(vertices.size() / 2);
}

void FocusRect::doRedraw() {
    if (!vertexDirty)
        return;
    vertexDirty = false;
    rastRenderer* renderer = rastRenderer::get();
    if (count == 0 || !renderer)
        geometry.reset();
    else if (!geometry)
        geometry = renderer->createGeometry(vertices, indices);
    else
        geometry->update(vertices, indices);
}

void FocusRect::draw() const {
    rastRenderer* renderer = rastRenderer::get();
    if (!geometry || !renderer)
        return;
    rastShader& shader = *renderer->getShader();
    shader.turnOffDrawQuads();
    shader.setTexture(nullptr);
    shader.setTextureArray(nullptr);
    renderer->setGeometry(geometry.get());
    renderer->drawGeometry(rastGeometry::Lines, static_cast<int>(count), 0);
    shader.turnOnDrawQuads();
}

void FocusRect::make(GraphicCommands* commands) const {
    if (count == 0 || !commands)
        return;
    GraphicCommandDrawGeometry* command = GraphicCommandDrawGeometry::take();
    command->set(vertices, indices, rastGeometry::Lines, static_cast<int>(count), nullptr);
    commands->add(command);
}

}  // namespace gui
