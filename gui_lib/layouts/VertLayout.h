#pragma once

#include "layouts/LinearLayout.h"

namespace gui {

// Puts the children in a column, a gap apart. vertAlign decides the flow:
// Min, Center and Max place the column of preferred heights at that end of
// the client rectangle; Stretch shares the whole height among the children
// within their limits. horzAlign places each child inside the column's width.
class VUREL_EXPORT VertLayout : public LinearLayout {
public:
    explicit VertLayout(int gap) : LinearLayout(linear::Axis::Y, gap) {}

    Layout* clone() const override { return copyAlignsTo_(new VertLayout(gap_)); }
    char const* getType() const override { return "vert"; }
    // 0 on an axis means unlimited. Unlike the row, every child first raises
    // both axes to its own limits, so the first child counts twice in height.
    osg::Vec2i getMaxSize() const override;
};

}  // namespace gui
