#pragma once

#include <cstdint>

#include "Align.h"
#include "orm/Allocator.h"
#include "osg/Vec2i.h"

namespace gui {

class Container;

// The arithmetic that HorzLayout and VertLayout share. Both place children
// in a line along a main axis (x for a row, y for a column) and align each
// one on the cross axis, so every step here takes the main axis as a
// parameter. Internal to the library.
namespace linear {

enum class Axis { X, Y };

// One child's claim while the space along the main axis is shared out.
struct ShareRecord {
    int length = 0;
    int min = 0;  // 0: no minimum
    int max = 0;  // 0: no maximum
    bool atMin = false;
    bool atMax = false;
};

// What one layout pass needs to know besides the container.
struct FlowSettings {
    Axis axis;
    int gap;
    Align mainAlign;
    Align crossAlign;
    // The column takes each child's main length from a fresh getPrefSize
    // call in its simple flow instead of the one taken at the pass start.
    bool freshMainPrefSize;
};

// Sums run in 64 bits so that absurd limits saturate instead of overflowing.
int clampToInt(int64_t value);

// The main axis component, or the cross one.
int mainOf(osg::Vec2i const& v, Axis axis);
int crossOf(osg::Vec2i const& v, Axis axis);
osg::Vec2i makeVec(Axis axis, int main, int cross);

// Adds (count - 1) * gap on the main axis when that component is at least 1.
osg::Vec2i addGaps(osg::Vec2i size, Axis axis, int count, int gap);
// Main axis: the sum of the children's minimums plus gaps; cross: the largest.
osg::Vec2i calcMinSize(Container const& container, Axis axis, int gap);
// Main axis: the sum of the preferred lengths plus a gap before each child
// but the first; cross: the largest.
osg::Vec2i calcPrefSize(Container const& container, Axis axis, int gap);

// Shares `space` among the records within their limits; the first records
// take the pixels that do not divide evenly.
void shareSpace(orm::vector<ShareRecord>& records, int space);

// One layout pass over the children: the simple flow for a main alignment
// of type Min, Center or Max, the stretch flow for Stretch, nothing for any
// other type. `records` is scratch storage kept by the caller.
void place(Container& container, orm::vector<osg::Vec2i> const& prefSizes, orm::vector<ShareRecord>& records,
           FlowSettings const& settings);

}  // namespace linear
}  // namespace gui
