#include "Align.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "orm/Log.h"

namespace gui {

namespace {

// The arithmetic runs in 64 bits so that absurd sizes saturate instead of
// overflowing.
int clampToInt(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                                                std::numeric_limits<int32_t>::max()));
}

struct AlignName {
    std::string_view name;
    Align::Type type;
};

constexpr AlignName kAlignNames[] = {
    {"left", Align::Min},        {"top", Align::Min},   {"min", Align::Min},
    {"center", Align::Center},   {"middle", Align::Center},
    {"right", Align::Max},       {"bottom", Align::Max}, {"max", Align::Max},
    {"stretch", Align::Stretch},
};

}  // namespace

void Align::calc(int size, int total, int& begin, int& end) const {
    int64_t const off = offset;
    switch (type) {
    case Min:
        begin = clampToInt(off);
        end = clampToInt(off + size);
        return;
    case Center:
        begin = clampToInt(off + (int64_t(total) - size) / 2);
        end = clampToInt(int64_t(begin) + size);
        return;
    case Max:
        begin = clampToInt(off - size + total);
        end = clampToInt(int64_t(begin) + size);
        return;
    case Stretch:
        // The item takes the whole axis: its size and the offset do not matter.
        begin = 0;
        end = total;
        return;
    }
    begin = clampToInt(off);
    end = clampToInt(off + size);
    orm_vlogf("VUREL", 8, "Invalid Align type!");
}

osg::RectImpl<osg::Vec2i> Align2::calc(osg::Vec2i const& size, osg::Vec2i const& total) const {
    osg::RectImpl<osg::Vec2i> rect;
    horz.calc(size.x, total.x, rect.min.x, rect.max.x);
    vert.calc(size.y, total.y, rect.min.y, rect.max.y);
    return rect;
}

bool getAlignTypeByName(orm::basic_string<char> const& name, Align::Type& type) {
    for (AlignName const& entry : kAlignNames) {
        if (entry.name == name) {
            type = entry.type;
            return true;
        }
    }
    return false;
}

}  // namespace gui
