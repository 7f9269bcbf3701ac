#pragma once

#include "Align.h"
#include "layouts/Layout.h"
#include "layouts/LinearFlow.h"

namespace gui {

// Puts the children in a row, a gap apart. horzAlign decides the flow: Min,
// Center and Max place the row of preferred widths at that end of the
// client rectangle; Stretch shares the whole width among the children within
// their limits. vertAlign places each child inside the row's height.
class VUREL_EXPORT HorzLayout : public Layout {
public:
    explicit HorzLayout(int gap);

    // Each setter stores and lays out again at once.
    int getGap() const { return gap_; }
    void setGap(int gap);
    Align const& getHorzAlign() const { return horzAlign_; }
    void setHorzAlign(Align const& align);
    Align const& getVertAlign() const { return vertAlign_; }
    void setVertAlign(Align const& align);

    Layout* clone() const override;
    char const* getType() const override { return "horz"; }
    osg::Vec2i getMinSize() const override;
    // 0 on an axis means unlimited: one unlimited child makes the row so.
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    osg::Vec2i calcMaxSize() const override;
    void updateSize() override;

protected:
    int gap_;
    Align horzAlign_;
    Align vertAlign_;
    // Scratch of the stretch flow, kept so that later passes do not allocate.
    orm::vector<linear::ShareRecord> shareRecords_;
};

}  // namespace gui
