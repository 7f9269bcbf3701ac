#include "layouts/LinearLayout.h"

#include "Container.h"

namespace gui {

void LinearLayout::setGap(int gap) {
    gap_ = gap;
    updateSize();
}

void LinearLayout::setHorzAlign(Align const& align) {
    horzAlign_ = align;
    updateSize();
}

void LinearLayout::setVertAlign(Align const& align) {
    vertAlign_ = align;
    updateSize();
}

Layout* LinearLayout::copyAlignsTo_(LinearLayout* copy) const {
    copy->horzAlign_ = horzAlign_;
    copy->vertAlign_ = vertAlign_;
    return copy;
}

osg::Vec2i LinearLayout::getMinSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcMinSize(*container, axis_, gap_) : osg::Vec2i();
}

osg::Vec2i LinearLayout::getPrefSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcPrefSize(*container, axis_, gap_) : osg::Vec2i();
}

osg::Vec2i LinearLayout::calcMaxSize() const {
    Container const* container = getContainerObject_();
    if (!container)
        return {};
    return linear::addGaps(Layout::calcMaxSize(), axis_, container->getWidgetCount(), gap_);
}

void LinearLayout::updateSize() {
    Container* container = getContainerObject_();
    if (!container)
        return;
    updatePrefSizes_();
    bool const row = axis_ == linear::Axis::X;
    // A column takes each child's height from a fresh preferred size.
    linear::place(*container, prefSizes_, shareRecords_,
                  {axis_, gap_, row ? horzAlign_ : vertAlign_, row ? vertAlign_ : horzAlign_, !row});
}

}  // namespace gui
