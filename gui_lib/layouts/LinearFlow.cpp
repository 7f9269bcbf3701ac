#include "layouts/LinearFlow.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Container.h"

namespace gui::linear {

namespace {

// Raises the length to the minimum and lowers it to the maximum; a flag
// once set stays set for the rest of the pass.
void fitToLimits(ShareRecord& r, int target) {
    if (r.min > 0 && r.length < r.min) {
        r.length = r.min;
        r.atMin = true;
    }
    if (r.max > 0) {
        r.length = std::min(r.length, r.max);
        if (r.length < target)
            r.atMax = true;
    }
}

int64_t totalLength(orm::vector<ShareRecord> const& records) {
    int64_t total = 0;
    for (ShareRecord const& r : records)
        total += r.length;
    return total;
}

// One correction round. Shrinking leaves the records held at their minimum
// alone, growing those held at their maximum, and shares what remains
// evenly among the others. Answers false when no further round can help.
bool shareRound(orm::vector<ShareRecord>& records, int space, bool shrink) {
    int64_t fixed = 0;
    int64_t fixedCount = 0;
    for (ShareRecord const& r : records)
        if (shrink ? r.atMin : r.atMax) {
            fixed += r.length;
            ++fixedCount;
        }
    int64_t const others = static_cast<int64_t>(records.size()) - fixedCount;
    if (others == 0)
        return false;
    int64_t const rest = std::max<int64_t>(space - fixed, 0);
    int const share = static_cast<int>(rest / others);
    int extra = static_cast<int>(rest % others);
    for (ShareRecord& r : records) {
        if (shrink ? r.atMin : r.atMax)
            continue;
        int const target = extra > 0 ? share + 1 : share;
        r.length = target;
        fitToLimits(r, target);
        if (extra > 0 && r.length == target)
            --extra;
    }
    return !(shrink && share == 0);
}

// Where a child of preferred size `pref` begins and ends across the line.
void alignAcross(FlowSettings const& s, osg::Vec2i const& pref, int crossLength, int& begin, int& end) {
    s.crossAlign.calc(crossOf(pref, s.axis), crossLength, begin, end);
}

void simpleFlow(Container& container, orm::vector<osg::Vec2i> const& prefSizes, FlowSettings const& s,
                osg::Recti const& r) {
    Axis const axis = s.axis;
    int const crossLength = crossOf(r.max - r.min, axis);
    int b = 0;
    int e = 0;
    // First pass: sizes, and the length of the whole line as preferred.
    int64_t total = 0;
    for (size_t i = 0; i < prefSizes.size(); ++i) {
        Widget* child = container.getWidget(static_cast<int>(i));
        if (!child)
            continue;
        alignAcross(s, prefSizes[i], crossLength, b, e);
        int const length = s.freshMainPrefSize ? mainOf(child->getPrefSize(), axis) : mainOf(prefSizes[i], axis);
        child->setSize(makeVec(axis, length, e - b));
        total += length;
        if (i > 0)
            total += s.gap;
    }
    int start = 0;
    int end = 0;
    s.mainAlign.calc(clampToInt(total), mainOf(r.max - r.min, axis), start, end);
    // Second pass: positions, moving on by the length each child really took.
    int64_t pen = int64_t(mainOf(r.min, axis)) + start;
    for (size_t i = 0; i < prefSizes.size(); ++i) {
        Widget* child = container.getWidget(static_cast<int>(i));
        if (!child)
            continue;
        alignAcross(s, prefSizes[i], crossLength, b, e);
        child->setPosition(makeVec(axis, clampToInt(pen), clampToInt(int64_t(crossOf(r.min, axis)) + b)));
        pen += int64_t(s.gap) + mainOf(child->getSize(), axis);
    }
}

void stretchFlow(Container& container, orm::vector<osg::Vec2i> const& prefSizes, orm::vector<ShareRecord>& records,
                 FlowSettings const& s, osg::Recti const& r) {
    Axis const axis = s.axis;
    int64_t const n = static_cast<int64_t>(prefSizes.size());
    if (n == 0)
        return;
    int const space = clampToInt(std::max<int64_t>(mainOf(r.max - r.min, axis) - (n - 1) * s.gap, 0));
    records.clear();
    for (size_t i = 0; i < prefSizes.size(); ++i) {
        ShareRecord record;
        if (Widget const* child = container.getWidget(static_cast<int>(i))) {
            record.min = mainOf(child->getMinSize(), axis);
            record.max = mainOf(child->calcMaxSize(), axis);
        }
        records.push_back(record);
    }
    shareSpace(records, space);

    int const crossLength = crossOf(r.max - r.min, axis);
    int b = 0;
    int e = 0;
    int64_t pen = mainOf(r.min, axis);
    // Bounds are checked on every step: a child's callback may lay out again.
    for (size_t i = 0; i < prefSizes.size() && i < records.size(); ++i) {
        Widget* child = container.getWidget(static_cast<int>(i));
        if (!child)
            continue;
        alignAcross(s, prefSizes[i], crossLength, b, e);
        child->setSize(makeVec(axis, records[i].length, e - b));
        child->setPosition(makeVec(axis, clampToInt(pen), clampToInt(int64_t(crossOf(r.min, axis)) + b)));
        pen += int64_t(mainOf(child->getSize(), axis)) + s.gap;
    }
}

}  // namespace

int clampToInt(int64_t value) {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

int mainOf(osg::Vec2i const& v, Axis axis) { return axis == Axis::X ? v.x : v.y; }

int crossOf(osg::Vec2i const& v, Axis axis) { return axis == Axis::X ? v.y : v.x; }

osg::Vec2i makeVec(Axis axis, int main, int cross) {
    return axis == Axis::X ? osg::Vec2i(main, cross) : osg::Vec2i(cross, main);
}

osg::Vec2i addGaps(osg::Vec2i size, Axis axis, int count, int gap) {
    int const main = mainOf(size, axis);
    if (main < 1)
        return size;
    int64_t const grown = int64_t(main) + (int64_t(count) - 1) * gap;
    return makeVec(axis, clampToInt(grown), crossOf(size, axis));
}

osg::Vec2i calcMinSize(Container const& container, Axis axis, int gap) {
    int const n = container.getWidgetCount();
    int64_t main = 0;
    int cross = 0;
    for (int i = 0; i < n; ++i)
        if (Widget const* child = container.getWidget(i)) {
            osg::Vec2i const m = child->getMinSize();
            main += mainOf(m, axis);
            cross = std::max(cross, crossOf(m, axis));
        }
    return addGaps(makeVec(axis, clampToInt(main), cross), axis, n, gap);
}

osg::Vec2i calcPrefSize(Container const& container, Axis axis, int gap) {
    int const n = container.getWidgetCount();
    int64_t main = 0;
    int cross = 0;
    for (int i = 0; i < n; ++i) {
        if (i > 0)
            main += gap;
        if (Widget const* child = container.getWidget(i)) {
            osg::Vec2i const p = child->getPrefSize();
            main += mainOf(p, axis);
            cross = std::max(cross, crossOf(p, axis));
        }
    }
    return makeVec(axis, clampToInt(main), cross);
}

void shareSpace(orm::vector<ShareRecord>& records, int space) {
    if (records.empty())
        return;
    int const share = std::max(space / static_cast<int>(records.size()), 0);
    for (ShareRecord& r : records) {
        r.length = share;
        r.atMin = false;
        r.atMax = false;
        fitToLimits(r, share);
    }
    int64_t total = totalLength(records);
    // A few rounds settle any realistic mix of limits; the cap keeps a
    // pathological one from looping.
    for (int round = 0; round < 4 && total != space; ++round) {
        bool const more = shareRound(records, space, total > space);
        total = totalLength(records);
        if (!more)
            break;
    }
}

void place(Container& container, orm::vector<osg::Vec2i> const& prefSizes, orm::vector<ShareRecord>& records,
           FlowSettings const& settings) {
    osg::Recti const r = container.getClientRect();
    switch (settings.mainAlign.getType()) {
    case Align::Min:
    case Align::Center:
    case Align::Max:
        simpleFlow(container, prefSizes, settings, r);
        return;
    case Align::Stretch:
        stretchFlow(container, prefSizes, records, settings, r);
        return;
    }
    // Any other type places nothing.
}

}  // namespace gui::linear
