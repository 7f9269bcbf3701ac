#pragma once

#include "Align.h"
#include "layouts/Layout.h"
#include "layouts/LinearFlow.h"

namespace gui {

// Puts the children in a column, a gap apart. vertAlign decides the flow:
// Min, Center and Max place the column of preferred heights at that end of
// the client rectangle; Stretch shares the whole height among the children
// within their limits. horzAlign places each child inside the column's width.
class VUREL_EXPORT VertLayout : public Layout {
public:
    explicit VertLayout(int gap);

    // Each setter stores and lays out again at once.
    int getGap() const { return gap_; }
    void setGap(int gap);
    Align const& getHorzAlign() const { return horzAlign_; }
    void setHorzAlign(Align const& align);
    Align const& getVertAlign() const { return vertAlign_; }
    void setVertAlign(Align const& align);

    Layout* clone() const override;
    char const* getType() const override { return "vert"; }
    osg::Vec2i getMinSize() const override;
    // 0 on an axis means unlimited. Unlike the row, every child first raises
    // both axes to its own limits, so the first child counts twice in height.
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
