#pragma once

#include <cstdint>

#include "Export.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"

namespace gui {

// Placement of an item along one axis: a kind and a pixel offset added to the
// computed start.
class VUREL_EXPORT Align {
public:
    enum Type : int32_t {
        Min = 0,      // start of the axis
        Center = 1,   // centre of the axis
        Max = 2,      // end of the axis
        Stretch = 3,  // fill the axis
        // The same kinds under their per-axis names.
        Left = Min,
        Top = Min,
        Middle = Center,
        Right = Max,
        Bottom = Max,
    };

    Align(Type type = Min, int offset = 0) : type(type), offset(offset) {}

    Type getType() const { return type; }
    void setType(Type value) { type = value; }
    int getOffset() const { return offset; }
    void setOffset(int value) { offset = value; }

    bool operator==(Align const& o) const { return type == o.type && offset == o.offset; }
    bool operator!=(Align const& o) const { return !(*this == o); }

    // Places an item of length `size` on an axis of length `total`. An unknown
    // type is logged and placed as Min.
    void calc(int size, int total, int& begin, int& end) const;

    Type type;
    int32_t offset;
};

// Placement on both axes, the horizontal one first.
class VUREL_EXPORT Align2 {
public:
    Align2(Align const& horz = Align(), Align const& vert = Align()) : horz(horz), vert(vert) {}

    Align const& getHorzAlign() const { return horz; }
    Align const& getVertAlign() const { return vert; }
    void setHorzAlign(Align const& value) { horz = value; }
    void setVertAlign(Align const& value) { vert = value; }

    bool operator==(Align2 const& o) const { return horz == o.horz && vert == o.vert; }
    bool operator!=(Align2 const& o) const { return !(*this == o); }

    // The rectangle of an item of `size` placed inside an area of `total`.
    osg::RectImpl<osg::Vec2i> calc(osg::Vec2i const& size, osg::Vec2i const& total) const;

    Align horz;
    Align vert;
};

// Space kept free inside each edge of a rectangle.
struct VUREL_EXPORT Insets {
    Insets(int32_t left = 0, int32_t top = 0, int32_t right = 0, int32_t bottom = 0)
        : left(left), top(top), right(right), bottom(bottom) {}

    bool operator==(Insets const& o) const = default;

    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};

// The kind of a text name ("left", "center", "max", "stretch"...); false for
// a text that names no kind, and then `type` is left as it was.
VUREL_EXPORT bool getAlignTypeByName(orm::basic_string<char> const& name, Align::Type& type);

}  // namespace gui
