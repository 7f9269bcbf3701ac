#pragma once

#include <cstdint>
#include <memory>

#include "Align.h"
#include "Export.h"
#include "orm/Allocator.h"
#include "osg/Rect.h"
#include "osg/Vec4f.h"
#include "rast/Types.h"

class rastGeometry;

namespace gui {

class GraphicCommands;

// The dotted frame around the widget that has the keyboard focus: line
// segments one pixel long with one-pixel gaps, inside the bounds less the
// insets, in target pixels (the UI scale is applied when it is built).
//
// Phases: setters mark dirty; `redraw` builds the vertex lists; `doRedraw`
// creates, updates or deletes the renderer geometry to match; `draw` and
// `make` only draw.
class VUREL_EXPORT FocusRect {
public:
    FocusRect();
    ~FocusRect();
    FocusRect(FocusRect const&) = delete;
    FocusRect& operator=(FocusRect const&) = delete;

    void setBounds(osg::RectImpl<osg::Vec2i> const& value);
    void setColor(osg::Vec4f const& value);
    void setInsets(Insets const& value);

    osg::RectImpl<osg::Vec2i> const& getBounds() const { return bounds; }
    osg::Vec4f const& getColor() const { return color; }
    Insets const& getInsets() const { return insets; }
    // Line segments of the frame; 0 when there is nothing to show.
    int64_t getCount() const { return count; }
    orm::vector<rastVertex> const& getVertices() const { return vertices; }
    rastGeometry const* getGeometry() const { return geometry.get(); }

    void redraw();
    void doRedraw();
    void draw() const;
    void make(GraphicCommands* commands) const;

private:
    void addSegment_(float x1, float y1, float x2, float y2);

    std::unique_ptr<rastGeometry> geometry;
    bool dirty = true;
    // Set by redraw when the geometry has to follow the vertex lists.
    bool vertexDirty = false;
    osg::RectImpl<osg::Vec2i> bounds;
    int64_t count = 0;
    Insets insets{2, 2, 2, 2};
    osg::Vec4f color{0, 0, 0, 1};
    orm::vector<rastVertex> vertices;
    orm::vector<int> indices;
};

}  // namespace gui
