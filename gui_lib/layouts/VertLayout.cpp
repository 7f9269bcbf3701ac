#include "layouts/VertLayout.h"

#include <algorithm>
#include <cstdint>

#include "Container.h"

namespace gui {

VertLayout::VertLayout(int gap) : gap_(gap) {}

void VertLayout::setGap(int gap) {
    gap_ = gap;
    updateSize();
}

void VertLayout::setHorzAlign(Align const& align) {
    horzAlign_ = align;
    updateSize();
}

void VertLayout::setVertAlign(Align const& align) {
    vertAlign_ = align;
    updateSize();
}

Layout* VertLayout::clone() const {
    auto* copy = new VertLayout(gap_);
    copy->horzAlign_ = horzAlign_;
    copy->vertAlign_ = vertAlign_;
    return copy;
}

osg::Vec2i VertLayout::getMinSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcMinSize(*container, linear::Axis::Y, gap_) : osg::Vec2i();
}

osg::Vec2i VertLayout::getPrefSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcPrefSize(*container, linear::Axis::Y, gap_) : osg::Vec2i();
}

osg::Vec2i VertLayout::getMaxSize() const {
    Container const* container = getContainerObject_();
    if (!container)
        return {};
    int const n = container->getWidgetCount();
    int x = 0;
    int64_t y = 0;
    bool xUnlimited = false;
    bool yUnlimited = false;
    for (int i = 0; i < n && !(xUnlimited && yUnlimited); ++i) {
        Widget const* child = container->getWidget(i);
        if (!child)
            continue;
        osg::Vec2i const m = child->getMaxSize();
        // Raised first, even on an axis already marked unlimited.
        x = std::max(x, m.x);
        y = std::max<int64_t>(y, m.y);
        if (!xUnlimited && m.x == 0) {
            x = 0;
            xUnlimited = true;
        }
        if (!yUnlimited) {
            if (m.y == 0) {
                y = 0;
                yUnlimited = true;
            } else {
                y += m.y;
            }
        }
    }
    int const sum = linear::clampToInt(y);
    return linear::addGaps({x, sum}, linear::Axis::Y, n, gap_);
}

osg::Vec2i VertLayout::calcMaxSize() const {
    Container const* container = getContainerObject_();
    if (!container)
        return {};
    return linear::addGaps(Layout::calcMaxSize(), linear::Axis::Y, container->getWidgetCount(), gap_);
}

void VertLayout::updateSize() {
    Container* container = getContainerObject_();
    if (!container)
        return;
    updatePrefSizes_();
    linear::place(*container, prefSizes_, shareRecords_, {linear::Axis::Y, gap_, vertAlign_, horzAlign_, true});
}

}  // namespace gui
