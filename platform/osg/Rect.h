#pragma once

#include <algorithm>
#include <limits>

#include "osg/Vec2i.h"

namespace osg {

// An axis-aligned rectangle given by its minimum and maximum corners. A
// default rectangle is "unset": its minimum is the largest value and its
// maximum the smallest, so expanding it by any point makes it that point.
template <class V>
struct RectImpl {
    using Value = decltype(V{}.x);

    V min{std::numeric_limits<Value>::max(), std::numeric_limits<Value>::max()};
    V max{std::numeric_limits<Value>::lowest(), std::numeric_limits<Value>::lowest()};

    constexpr RectImpl() = default;
    constexpr RectImpl(V const& mn, V const& mx) : min(mn), max(mx) {}
    constexpr RectImpl(Value xMin, Value yMin, Value xMax, Value yMax) : min(xMin, yMin), max(xMax, yMax) {}

    static constexpr RectImpl fromPosSize(V const& pos, V const& size) { return {pos, pos + size}; }

    constexpr bool isUnset() const { return *this == RectImpl(); }
    // A rectangle whose maximum is below its minimum on either axis holds nothing.
    constexpr bool isInverted() const { return max.x < min.x || max.y < min.y; }
    constexpr bool isEmpty() const { return max.x <= min.x || max.y <= min.y; }
    constexpr Value width() const { return max.x - min.x; }
    constexpr Value height() const { return max.y - min.y; }
    constexpr V size() const { return {width(), height()}; }

    constexpr bool contains(V const& p) const { return p.x >= min.x && p.x < max.x && p.y >= min.y && p.y < max.y; }

    void expandBy(V const& p) {
        min.x = std::min(min.x, p.x);
        min.y = std::min(min.y, p.y);
        max.x = std::max(max.x, p.x);
        max.y = std::max(max.y, p.y);
    }

    // The common part; inverted when the two do not overlap.
    constexpr RectImpl intersect(RectImpl const& o) const {
        return {std::max(min.x, o.min.x), std::max(min.y, o.min.y), std::min(max.x, o.max.x), std::min(max.y, o.max.y)};
    }

    constexpr RectImpl translated(V const& d) const { return {min + d, max + d}; }

    constexpr bool operator==(RectImpl const&) const = default;
};

using Recti = RectImpl<Vec2i>;

}  // namespace osg
