#include "layouts/VertLayout.h"

#include <algorithm>
#include <cstdint>

#include "Container.h"

namespace gui {

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

}  // namespace gui
