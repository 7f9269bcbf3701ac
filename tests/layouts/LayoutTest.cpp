#include <gtest/gtest.h>

#include <vector>

#include "AllocationCounter.h"
#include "GuiFixture.h"
#include "LogCapture.h"
#include "Panel.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "WidgetHandler.h"
#include "layouts/HorzLayout.h"
#include "layouts/VertLayout.h"

using gui::Align;
using osg::Vec2i;
using vurel_test::GuiFixture;

namespace {

// A child whose preferred size the test sets; its limits live in its skin data.
class Box : public gui::Panel {
public:
    explicit Box(Vec2i pref) : pref_(pref) {}
    Vec2i calcSize() const override { return pref_; }

private:
    Vec2i pref_;
};

// Counts the passes that its container asks for.
class CountingHorzLayout : public gui::HorzLayout {
public:
    explicit CountingHorzLayout(int& passes) : gui::HorzLayout(0), passes_(passes) {}
    void updateSize() override {
        ++passes_;
        gui::HorzLayout::updateSize();
    }

private:
    int& passes_;
};

class LayoutTest : public GuiFixture {
protected:
    void SetUp() override {
        GuiFixture::SetUp();
        parent = new gui::Panel();
    }
    void TearDown() override {
        gui::Widget::destroy(parent);
        GuiFixture::TearDown();
    }

    Box* add(Vec2i pref, Vec2i min = {}, Vec2i max = {}) {
        auto* box = new Box(pref);
        box->getWidgetSkin()->getData()->setMinSize(min);
        box->getWidgetSkin()->getData()->setMaxSize(max);
        parent->insertWidget(box);
        return box;
    }
    template <class L>
    L* use(L* layout) {
        parent->setLayout(layout->handler());
        return layout;
    }
    gui::Widget* child(int i) const { return parent->getWidget(i); }
    std::vector<int> xs() const { return collect([](gui::Widget* w) { return w->getPosition().x; }); }
    std::vector<int> ys() const { return collect([](gui::Widget* w) { return w->getPosition().y; }); }
    std::vector<int> widths() const { return collect([](gui::Widget* w) { return w->getSize().x; }); }
    std::vector<int> heights() const { return collect([](gui::Widget* w) { return w->getSize().y; }); }
    template <class F>
    std::vector<int> collect(F f) const {
        std::vector<int> out;
        for (int i = 0; i < parent->getWidgetCount(); ++i)
            out.push_back(f(child(i)));
        return out;
    }

    gui::Panel* parent = nullptr;
};

using V = std::vector<int>;

}  // namespace

TEST_F(LayoutTest, SizeAnswersSumTheMainAxisAndTakeTheLargestAcross) {
    auto* horz = use(new gui::HorzLayout(4));
    EXPECT_EQ(horz->getMinSize(), Vec2i(0, 0));  // no children
    EXPECT_EQ(horz->getPrefSize(), Vec2i(0, 0));
    EXPECT_EQ(horz->getMaxSize(), Vec2i(0, 0));

    // Preferred sizes are clamped by the child's own limits: the third becomes (10,9).
    add({10, 20}, {5, 4}, {40, 50});
    add({20, 5}, {0, 0}, {20, 30});
    add({30, 8}, {7, 9}, {10, 60});
    // min: 5+0+7 = 12, plus two gaps of 4 = 20; across max(4,0,9) = 9
    EXPECT_EQ(horz->getMinSize(), Vec2i(20, 9));
    // pref: 10+20+10 + 8 = 48; across max(20,5,9) = 20
    EXPECT_EQ(horz->getPrefSize(), Vec2i(48, 20));
    // max: 40+20+10 + 8 = 78; across 60
    EXPECT_EQ(horz->getMaxSize(), Vec2i(78, 60));
    // calcMaxSize: largest per axis (40,60), gaps on x only = (48,60)
    EXPECT_EQ(horz->calcMaxSize(), Vec2i(48, 60));

    auto* vert = use(new gui::VertLayout(4));
    EXPECT_EQ(vert->getMinSize(), Vec2i(7, 21));     // 4+0+9 + 8 across max 7
    EXPECT_EQ(vert->getPrefSize(), Vec2i(20, 42));   // 20+5+9 + 8, across 20
    EXPECT_EQ(vert->calcMaxSize(), Vec2i(40, 68));   // (40,60) + 8 on y
    // Each child raises y first, then adds: 50->100, 100->130, 130->190, + 8.
    EXPECT_EQ(vert->getMaxSize(), Vec2i(40, 198));

    // The container adds its insets to the layout's preferred size.
    parent->getWidgetSkin()->getData()->setInsets(gui::Insets(1, 2, 3, 4));
    EXPECT_EQ(parent->getPrefSize(), Vec2i(24, 48));
}

TEST_F(LayoutTest, ZeroMaximumMeansUnlimited) {
    add({10, 10}, {}, {40, 50});
    add({10, 10}, {}, {0, 30});
    add({10, 10}, {}, {10, 60});
    auto* horz = use(new gui::HorzLayout(4));
    // x: 40, then unlimited (and no gaps on 0); y: 50, 50, 60.
    EXPECT_EQ(horz->getMaxSize(), Vec2i(0, 60));
    EXPECT_EQ(parent->getMaxSize(), Vec2i(0, 60));

    auto* vert = use(new gui::VertLayout(4));
    // x: 40, then 0 and marked, then raised again to 10 by the third child.
    // y: 100, 130, 190, + 8.
    EXPECT_EQ(vert->getMaxSize(), Vec2i(10, 198));

    // Two children of height 100 and 50 without gap: the first counts twice.
    gui::Widget::destroy(child(2));
    child(0)->getWidgetSkin()->getData()->setMaxSize({20, 100});
    child(1)->getWidgetSkin()->getData()->setMaxSize({30, 50});
    vert->setGap(0);
    EXPECT_EQ(vert->getMaxSize(), Vec2i(30, 250));

    // Unlimited height in the row ends the walk once both axes are unlimited.
    child(1)->getWidgetSkin()->getData()->setMaxSize({0, 0});
    auto* horz2 = use(new gui::HorzLayout(4));
    EXPECT_EQ(horz2->getMaxSize(), Vec2i(0, 0));
}

TEST_F(LayoutTest, SimpleFlowPlacesPreferredSizesByEveryAlignment) {
    // Client rectangle (5,3)-(105,43): 100 by 40.
    parent->getWidgetSkin()->getData()->setInsets(gui::Insets(5, 3, 7, 1));
    parent->setSize({112, 44});
    add({10, 10});
    add({20, 16});
    add({30, 6});
    auto* layout = use(new gui::HorzLayout(5));
    // The row is 10+20+30 + 2*5 = 70 long.
    EXPECT_EQ(xs(), V({5, 20, 45}));  // left: 0, 15, 40
    EXPECT_EQ(ys(), V({3, 3, 3}));
    EXPECT_EQ(widths(), V({10, 20, 30}));
    EXPECT_EQ(heights(), V({10, 16, 6}));

    layout->setHorzAlign(Align(Align::Center));  // start (100-70)/2 = 15
    EXPECT_EQ(xs(), V({20, 35, 60}));
    layout->setHorzAlign(Align(Align::Max));  // start 30
    EXPECT_EQ(xs(), V({35, 50, 75}));
    layout->setHorzAlign(Align(Align::Max, -2));
    EXPECT_EQ(xs(), V({33, 48, 73}));
    layout->setHorzAlign(Align(Align::Min, 3));
    EXPECT_EQ(xs(), V({8, 23, 48}));

    layout->setVertAlign(Align(Align::Center));  // (40-h)/2: 15, 12, 17
    EXPECT_EQ(ys(), V({18, 15, 20}));
    layout->setVertAlign(Align(Align::Bottom));  // 40-h: 30, 24, 34
    EXPECT_EQ(ys(), V({33, 27, 37}));
    layout->setVertAlign(Align(Align::Top, 2));
    EXPECT_EQ(ys(), V({5, 5, 5}));
    layout->setVertAlign(Align(Align::Stretch));
    EXPECT_EQ(ys(), V({3, 3, 3}));
    EXPECT_EQ(heights(), V({40, 40, 40}));

    // A child's own maximum wins over a stretch across.
    child(1)->getWidgetSkin()->getData()->setMaxSize({0, 12});
    layout->updateSize();
    EXPECT_EQ(heights(), V({40, 12, 40}));
}

TEST_F(LayoutTest, SimpleFlowMayOverflowAndGapsCountBetweenChildren) {
    parent->setSize({100, 40});
    for (int i = 0; i < 3; ++i)
        add({10, 10});
    auto* layout = use(new gui::HorzLayout(5));
    layout->setHorzAlign(Align(Align::Right));  // ends at 100
    EXPECT_EQ(xs(), V({60, 75, 90}));
    layout->setGap(40);  // 30 + 80 = 110 starts left of the client rectangle
    EXPECT_EQ(xs(), V({-10, 40, 90}));
}

TEST_F(LayoutTest, StretchSharesSpaceWithinLimitsFirstChildrenTakeSparePixels) {
    struct Case {
        int width;
        int gap;
        std::vector<std::pair<Vec2i, Vec2i>> limits;  // min, max per child
        V widths;
        V xs;
    };
    Case const cases[] = {
        // 101/3 = 33 r 2: the first two take one more.
        {101, 0, {{{}, {}}, {{}, {}}, {{}, {}}}, {34, 34, 33}, {0, 34, 68}},
        // Gaps come off the space: (100 - 10)/3 = 30.
        {100, 5, {{{}, {}}, {{}, {}}, {{}, {}}}, {30, 30, 30}, {0, 35, 70}},
        // Minimum 50 of 60: the other shrinks to 10.
        {60, 0, {{{50, 0}, {}}, {{}, {}}}, {50, 10}, {0, 50}},
        // Two maxima of 10 in 100: 80 stay free at the end.
        {100, 0, {{{}, {10, 0}}, {{}, {10, 0}}}, {10, 10}, {0, 10}},
        // Max 20 first: 81 left for two, 41 and 40.
        {101, 0, {{{}, {20, 0}}, {{}, {}}, {{}, {}}}, {20, 41, 40}, {0, 20, 61}},
        // Share 3 each, 1 spare; the first stops at 3 so the spare goes to the second.
        {10, 0, {{{}, {3, 0}}, {{}, {}}, {{}, {}}}, {3, 4, 3}, {0, 3, 7}},
        // 6 over mins 2, -, 5: the two free share 1; the first cannot go
        // below 2, so the spare pixel passes on to the second.
        {6, 0, {{{2, 0}, {}}, {{}, {}}, {{5, 0}, {}}}, {2, 1, 5}, {0, 2, 3}},
        // Min 30 of 51: the other two share 21, 11 and 10.
        {51, 0, {{{30, 0}, {}}, {{}, {}}, {{}, {}}}, {30, 11, 10}, {0, 30, 41}},
        // Min 30 of 20: nothing is left for the others and the row overflows.
        {20, 0, {{{30, 0}, {}}, {{}, {}}, {{}, {}}}, {30, 0, 0}, {0, 30, 30}},
        // Gaps above the width: the space is 0.
        {10, 10, {{{}, {}}, {{}, {}}, {{}, {}}}, {0, 0, 0}, {0, 10, 20}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(::testing::Message() << "width " << c.width << " children " << c.limits.size());
        parent->clear();
        parent->setSize({c.width, 30});
        for (auto const& [mn, mx] : c.limits)
            add({5, 5}, mn, mx);
        auto* layout = use(new gui::HorzLayout(c.gap));
        layout->setHorzAlign(Align(Align::Stretch));
        EXPECT_EQ(widths(), c.widths);
        EXPECT_EQ(xs(), c.xs);
    }
}

TEST_F(LayoutTest, StretchAlignsAcrossAndStartsAtTheClientRectangle) {
    parent->getWidgetSkin()->getData()->setInsets(gui::Insets(5, 3, 5, 3));
    parent->setSize({110, 46});  // client (5,3) 100 by 40
    add({10, 10});
    add({10, 20});
    auto* layout = use(new gui::HorzLayout(0));
    layout->setHorzAlign(Align(Align::Stretch));
    layout->setVertAlign(Align(Align::Center));
    EXPECT_EQ(xs(), V({5, 55}));
    EXPECT_EQ(ys(), V({18, 13}));  // 3 + (40-10)/2, 3 + (40-20)/2
    EXPECT_EQ(widths(), V({50, 50}));
    EXPECT_EQ(heights(), V({10, 20}));

    // An unknown main alignment leaves the children where they are.
    layout->setHorzAlign(Align(static_cast<Align::Type>(7)));
    parent->setSize({210, 46});
    EXPECT_EQ(widths(), V({50, 50}));
}

TEST_F(LayoutTest, VertLayoutMirrorsTheRow) {
    parent->setSize({40, 100});
    add({10, 10});
    add({16, 20});
    add({6, 30});
    auto* layout = use(new gui::VertLayout(5));
    layout->setVertAlign(Align(Align::Bottom));  // column 70 long, starts at 30
    layout->setHorzAlign(Align(Align::Center));
    EXPECT_EQ(ys(), V({30, 45, 70}));
    EXPECT_EQ(xs(), V({15, 12, 17}));
    EXPECT_EQ(heights(), V({10, 20, 30}));
    EXPECT_EQ(widths(), V({10, 16, 6}));

    // Stretch: (100 - 10)/3 = 30 each, the minimum of the last holds at 40.
    child(2)->getWidgetSkin()->getData()->setMinSize({0, 40});
    layout->setVertAlign(Align(Align::Stretch));
    layout->setHorzAlign(Align(Align::Stretch));
    // 30,30,40 = 100 > 90: the first two share 50, 25 each.
    EXPECT_EQ(heights(), V({25, 25, 40}));
    EXPECT_EQ(ys(), V({0, 30, 60}));
    EXPECT_EQ(widths(), V({40, 40, 40}));
}

TEST_F(LayoutTest, ContainerRunsItsLayoutOncePerFrame) {
    int passes = 0;
    parent->setSize({100, 20});
    use(new CountingHorzLayout(passes));
    passes = 0;
    for (int i = 0; i < 5; ++i)
        add({10, 10});
    EXPECT_EQ(passes, 0);
    frame();
    EXPECT_EQ(passes, 1);
    EXPECT_EQ(xs(), V({0, 10, 20, 30, 40}));
    frame();
    EXPECT_EQ(passes, 1);
    parent->setSize({120, 20});  // a resize lays out at once
    EXPECT_EQ(passes, 2);
}

TEST_F(LayoutTest, CloneCopiesSettingsAndALayoutWithoutContainerAnswersZero) {
    gui::HorzLayout horz(7);
    horz.setHorzAlign(Align(Align::Max, 2));
    horz.setVertAlign(Align(Align::Center, -1));
    EXPECT_EQ(horz.getPrefSize(), Vec2i(0, 0));
    horz.updateSize();  // nothing to place, nothing to do

    gui::Layout* copy = horz.clone();
    auto* h = dynamic_cast<gui::HorzLayout*>(copy);
    ASSERT_NE(h, nullptr);
    EXPECT_STREQ(h->getType(), "horz");
    EXPECT_EQ(h->getGap(), 7);
    EXPECT_EQ(h->getHorzAlign(), Align(Align::Max, 2));
    EXPECT_EQ(h->getVertAlign(), Align(Align::Center, -1));
    EXPECT_EQ(h->getContainer(), nullptr);
    gui::Layout::destroy(copy);

    gui::VertLayout vert(3);
    vert.setVertAlign(Align(Align::Stretch));
    copy = vert.clone();
    auto* v = dynamic_cast<gui::VertLayout*>(copy);
    ASSERT_NE(v, nullptr);
    EXPECT_STREQ(v->getType(), "vert");
    EXPECT_EQ(v->getGap(), 3);
    EXPECT_EQ(v->getVertAlign(), Align(Align::Stretch));
    gui::Layout::destroy(copy);
}

TEST_F(LayoutTest, SteadyPassesAllocateNothing) {
    parent->setSize({100, 20});
    for (int i = 0; i < 4; ++i)
        add({10, 10}, {}, {i == 0 ? 12 : 0, 0});
    auto* layout = use(new gui::HorzLayout(2));
    for (Align::Type type : {Align::Stretch, Align::Center}) {
        layout->setHorzAlign(Align(type));
        layout->updateSize();
        vurel_test::AllocationCounter counter;
        for (int i = 0; i < 3; ++i)
            layout->updateSize();
        EXPECT_EQ(counter.count(), 0u) << "type " << type;
    }
}
