#include "layouts/HorzLayout.h"

#include <algorithm>
#include <cstdint>

#include "Container.h"

namespace gui {

HorzLayout::HorzLayout(int gap) : gap_(gap) {}

void HorzLayout::setGap(int gap) {
    gap_ = gap;
    updateSize();
}

void HorzLayout::setHorzAlign(Align const& align) {
    horzAlign_ = align;
    updateSize();
}

void HorzLayout::setVertAlign(Align const& align) {
    vertAlign_ = align;
    updateSize();
}

Layout* HorzLayout::clone() const {
    auto* copy = new HorzLayout(gap_);
    copy->horzAlign_ = horzAlign_;
    copy->vertAlign_ = vertAlign_;
    return copy;
}

osg::Vec2i HorzLayout::getMinSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcMinSize(*container, linear::Axis::X, gap_) : osg::Vec2i();
}

osg::Vec2i HorzLayout::getPrefSize() const {
    Container const* container = getContainerObject_();
    return container ? linear::calcPrefSize(*container, linear::Axis::X, gap_) : osg::Vec2i();
}

osg::Vec2i HorzLayout::getMaxSize() const {
    Container const* container = getContainerObject_();
    if (!container)
        return {};
    int const n = container->getWidgetCount();
    int64_t x = 0;
    int y = 0;
    bool xUnlimited = false;
    bool yUnlimited = false;
    for (int i = 0; i < n && !(xUnlimited && yUnlimited); ++i) {
        Widget const* child = container->getWidget(i);
        if (!child)
            continue;
        osg::Vec2i const m = child->getMaxSize();
        if (!xUnlimited) {
            if (m.x == 0) {
                x = 0;
                xUnlimited = true;
            } else {
                x += m.x;
            }
        }
        if (!yUnlimited) {
            if (m.y == 0) {
                y = 0;
                yUnlimited = true;
            } else {
                y = std::max(y, m.y);
            }
        }
    }
    int const sum = linear::clampToInt(x);
    return linear::addGaps({sum, y}, linear::Axis::X, n, gap_);
}

osg::Vec2i HorzLayout::calcMaxSize() const {
    Container const* container = getContainerObject_();
    if (!container)
        return {};
    return linear::addGaps(Layout::calcMaxSize(), linear::Axis::X, container->getWidgetCount(), gap_);
}

void HorzLayout::updateSize() {
    Container* container = getContainerObject_();
    if (!container)
        return;
    updatePrefSizes_();
    linear::place(*container, prefSizes_, shareRecords_, {linear::Axis::X, gap_, horzAlign_, vertAlign_, false});
}

}  // namespace gui
