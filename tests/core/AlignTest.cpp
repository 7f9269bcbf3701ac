#include <gtest/gtest.h>

#include "Align.h"
#include "LogCapture.h"

namespace {

struct Span {
    int begin;
    int end;
    bool operator==(Span const&) const = default;
};

std::ostream& operator<<(std::ostream& os, Span const& s) { return os << "[" << s.begin << ", " << s.end << ")"; }

Span place(gui::Align const& align, int size, int total) {
    Span s{-12345, -12345};
    align.calc(size, total, s.begin, s.end);
    return s;
}

}  // namespace

TEST(AlignTest, CalcPlacesItemOnOneAxis) {
    using gui::Align;
    EXPECT_EQ(place(Align(Align::Min, 5), 10, 100), (Span{5, 15}));
    EXPECT_EQ(place(Align(Align::Max, 0), 10, 100), (Span{90, 100}));
    EXPECT_EQ(place(Align(Align::Max, -4), 10, 100), (Span{86, 96}));
    EXPECT_EQ(place(Align(Align::Center, 3), 20, 100), (Span{43, 63}));
    // The odd pixel of the remainder goes to the end side.
    EXPECT_EQ(place(Align(Align::Center), 10, 15), (Span{2, 12}));
    // An oversize item spills past both sides; the halving truncates toward zero.
    EXPECT_EQ(place(Align(Align::Center), 30, 11), (Span{-9, 21}));
    EXPECT_EQ(place(Align(Align::Max), 30, 11), (Span{-19, 11}));
    // Stretch takes the whole axis whatever the size and offset.
    EXPECT_EQ(place(Align(Align::Stretch, 7), 3, 50), (Span{0, 50}));
    EXPECT_EQ(place(Align(Align::Stretch, -7), 500, 50), (Span{0, 50}));
}

TEST(AlignTest, InvalidTypeIsLoggedAndPlacedAtStart) {
    vurel_test::LogCapture log;
    gui::Align const bad(static_cast<gui::Align::Type>(7), 4);
    EXPECT_EQ(place(bad, 10, 100), (Span{4, 14}));
    EXPECT_TRUE(log.contains("VUREL", 8, "Invalid Align type!"));

    log.clear();
    place(gui::Align(gui::Align::Center), 10, 100);
    EXPECT_TRUE(log.lines().empty());
}

TEST(AlignTest, EqualityComparesEveryField) {
    EXPECT_EQ(gui::Align(), gui::Align(gui::Align::Min, 0));
    EXPECT_NE(gui::Align(gui::Align::Max, -3), gui::Align(gui::Align::Max, 3));
    EXPECT_NE(gui::Align(gui::Align::Max, -3), gui::Align(gui::Align::Center, -3));
    gui::Align2 const a(gui::Align::Center, gui::Align::Stretch);
    EXPECT_NE(a, gui::Align2(gui::Align::Center, gui::Align(gui::Align::Stretch, 1)));
    EXPECT_NE(a, gui::Align2(gui::Align::Stretch, gui::Align::Center));
    EXPECT_NE(gui::Insets(1, 2, 3, 4), gui::Insets(1, 2, 4, 3));
}

TEST(AlignTest, Align2CalcUsesHorzForXAndVertForY) {
    gui::Align2 const align(gui::Align(gui::Align::Max, -2), gui::Align(gui::Align::Center, 1));
    osg::Recti const r = align.calc(osg::Vec2i(10, 20), osg::Vec2i(100, 50));
    EXPECT_EQ(r, osg::Recti(88, 16, 98, 36));

    gui::Align2 const stretch(gui::Align::Stretch, gui::Align::Min);
    EXPECT_EQ(stretch.calc(osg::Vec2i(10, 20), osg::Vec2i(100, 50)), osg::Recti(0, 0, 100, 20));
}

TEST(AlignTest, TypeByName) {
    struct Case {
        char const* name;
        gui::Align::Type type;
    };
    Case const cases[] = {
        {"left", gui::Align::Min},      {"top", gui::Align::Min},      {"min", gui::Align::Min},
        {"center", gui::Align::Center}, {"middle", gui::Align::Center}, {"right", gui::Align::Max},
        {"bottom", gui::Align::Max},    {"max", gui::Align::Max},      {"stretch", gui::Align::Stretch},
    };
    for (Case const& c : cases) {
        gui::Align::Type type = static_cast<gui::Align::Type>(-1);
        EXPECT_TRUE(gui::getAlignTypeByName(c.name, type)) << c.name;
        EXPECT_EQ(type, c.type) << c.name;
    }
    // Unknown texts fail and leave the value alone.
    for (char const* name : {"Left", "centre", "", "stretch ", "fill"}) {
        gui::Align::Type type = gui::Align::Center;
        EXPECT_FALSE(gui::getAlignTypeByName(name, type)) << name;
        EXPECT_EQ(type, gui::Align::Center) << name;
    }
}
