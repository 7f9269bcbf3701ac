#pragma once

#include "Align.h"
#include "layouts/Layout.h"
#include "layouts/LinearFlow.h"

namespace gui {

// What a row and a column share: a gap between the children, the alignment
// along the flow (Min, Center and Max place the children's preferred lengths
// at that end of the client rectangle; Stretch shares the whole length among
// them within their limits) and the alignment of each child across it.
class VUREL_EXPORT LinearLayout : public Layout {
public:
    // Each setter stores and lays out again at once.
    int getGap() const { return gap_; }
    void setGap(int gap);
    Align const& getHorzAlign() const { return horzAlign_; }
    void setHorzAlign(Align const& align);
    Align const& getVertAlign() const { return vertAlign_; }
    void setVertAlign(Align const& align);

    osg::Vec2i getMinSize() const override;
    osg::Vec2i getPrefSize() const override;
    osg::Vec2i calcMaxSize() const override;
    void updateSize() override;

protected:
    LinearLayout(linear::Axis axis, int gap) : axis_(axis), gap_(gap) {}
    // Gives `copy` this layout's alignments; clone() of each kind makes it.
    Layout* copyAlignsTo_(LinearLayout* copy) const;

    linear::Axis axis_;
    int gap_;
    Align horzAlign_;
    Align vertAlign_;
    // Scratch of the stretch flow, kept so that later passes do not allocate.
    orm::vector<linear::ShareRecord> shareRecords_;
};

}  // namespace gui
