#pragma once

#include "layouts/LinearLayout.h"

namespace gui {

// Puts the children in a row, a gap apart. horzAlign decides the flow: Min,
// Center and Max place the row of preferred widths at that end of the
// client rectangle; Stretch shares the whole width among the children within
// their limits. vertAlign places each child inside the row's height.
class VUREL_EXPORT HorzLayout : public LinearLayout {
public:
    explicit HorzLayout(int gap) : LinearLayout(linear::Axis::X, gap) {}

    Layout* clone() const override { return copyAlignsTo_(new HorzLayout(gap_)); }
    char const* getType() const override { return "horz"; }
    // 0 on an axis means unlimited: one unlimited child makes the row so.
    osg::Vec2i getMaxSize() const override;
};

}  // namespace gui
