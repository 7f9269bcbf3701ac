#include "layouts/HorzLayout.h"

#include <algorithm>
#include <cstdint>

#include "Container.h"

namespace gui {

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

}  // namespace gui
