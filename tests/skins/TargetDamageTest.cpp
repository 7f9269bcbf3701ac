#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Panel.h"
#include "SkinFixture.h"
#include "Skin/Skin.h"
#include "rast/FrameBuffer.h"

namespace {

// A panel drawn through a target, holding two child panels, over the
// recording backend: which part of the target each change draws again.
class TargetDamageTest : public vurel_test::SkinFixture {
protected:
    void SetUp() override {
        SkinFixture::SetUp();
        owner = makePanel({30, 40}, {200, 100});
        owner->setDrawToTarget(true);
        first = makePanel({10, 10}, {40, 20});
        second = makePanel({100, 50}, {40, 20});
        owner->insertWidget(first);
        owner->insertWidget(second);
        update();
        ASSERT_NE(owner->getWidgetSkin()->getTarget(), nullptr);
        backend().clearEvents();
    }

    static gui::Panel* makePanel(osg::Vec2i position, osg::Vec2i size) {
        auto* panel = new gui::Panel();
        panel->setPosition(position);
        panel->setSize(size);
        return panel;
    }

    static std::string bindOf(gui::Widget* widget, bool keep) {
        std::string const id = std::to_string(widget->getWidgetSkin()->getTarget()->getId());
        return "bindFrameBuffer id=" + id + (keep ? " keep" : "");
    }

    // The events of the next logic and render stages.
    std::vector<std::string> updateEvents() {
        backend().clearEvents();
        update();
        return backend().getEvents();
    }

    static bool has(std::vector<std::string> const& events, std::string const& event) {
        for (std::string const& e : events)
            if (e == event)
                return true;
        return false;
    }

    gui::Panel* owner = nullptr;
    gui::Panel* first = nullptr;
    gui::Panel* second = nullptr;
};

TEST_F(TargetDamageTest, AChildsChangeDrawsOnlyItsRectangleAgain) {
    std::vector<std::string> events = updateEvents();
    EXPECT_EQ(events, std::vector<std::string>{"endRedraw"}) << "nothing changed, nothing drawn";

    first->setText(L"Hi");
    events = updateEvents();
    ASSERT_TRUE(has(events, bindOf(owner, true))) << ::testing::PrintToString(events);
    EXPECT_FALSE(has(events, bindOf(owner, false)));
    // Cleared and drawn under the stale rectangle; the other child is skipped.
    EXPECT_TRUE(has(events, "pushClipRect 10 10 50 30"));
    EXPECT_TRUE(has(events, "clear 0 0 0 0"));
    EXPECT_FALSE(has(events, "pushClipRect 100 50 140 70")) << ::testing::PrintToString(events);

    // A move makes stale where the child was and where it is.
    second->setPosition({120, 60});
    events = updateEvents();
    EXPECT_TRUE(has(events, bindOf(owner, true)));
    EXPECT_TRUE(has(events, "pushClipRect 100 50 160 80")) << ::testing::PrintToString(events);

    // A resize as well, from the old rectangle to the new.
    second->setSize({20, 10});
    events = updateEvents();
    EXPECT_TRUE(has(events, "pushClipRect 120 60 160 80")) << ::testing::PrintToString(events);

    // Hiding a child draws its place again, without it.
    first->setVisible(false);
    events = updateEvents();
    EXPECT_TRUE(has(events, "pushClipRect 10 10 50 30")) << ::testing::PrintToString(events);
    EXPECT_EQ(backend().countEvents("drawQuads tex=2"), 1u) << "only the owner's background: " << ::testing::PrintToString(events);
}

TEST_F(TargetDamageTest, TheWholeTargetIsDrawnWhenItsOwnLookOrSizeChangesOrClippingIsOff) {
    owner->setText(L"Title");
    std::vector<std::string> events = updateEvents();
    EXPECT_TRUE(has(events, bindOf(owner, false))) << ::testing::PrintToString(events);
    EXPECT_FALSE(has(events, bindOf(owner, true)));

    // A new size makes a new target, which is drawn whole.
    owner->setSize({210, 100});
    events = updateEvents();
    EXPECT_TRUE(has(events, bindOf(owner, false))) << ::testing::PrintToString(events);

    // Unclipped, a child may draw anywhere in the target.
    gui().enableClipping(false);
    first->setText(L"Hi");
    events = updateEvents();
    EXPECT_TRUE(has(events, bindOf(owner, false))) << ::testing::PrintToString(events);
    gui().enableClipping(true);
}

TEST_F(TargetDamageTest, ANestedTargetIsDrawnAgainInPartAndSoIsItsPlaceOutside) {
    auto* inner = makePanel({5, 5}, {20, 10});
    second->setDrawToTarget(true);
    second->insertWidget(inner);
    update();
    ASSERT_NE(second->getWidgetSkin()->getTarget(), nullptr);

    inner->setText(L"x");
    std::vector<std::string> events = updateEvents();
    EXPECT_TRUE(has(events, bindOf(second, true))) << ::testing::PrintToString(events);
    EXPECT_TRUE(has(events, "pushClipRect 5 5 25 15"));
    EXPECT_TRUE(has(events, bindOf(owner, true)));
    EXPECT_TRUE(has(events, "pushClipRect 100 50 140 70"));
}

TEST_F(TargetDamageTest, ChildrenOutsideTheClipAreNotDrawn) {
    auto* outside = makePanel({300, 10}, {40, 20});
    owner->insertWidget(outside);
    owner->setDrawToTarget(false);
    update();
    backend().clearEvents();
    owner->draw();
    // The owner at (30, 40) clips to itself: the first child is drawn, the one beyond its right edge is not.
    EXPECT_EQ(backend().countEvents("pushClipRect 40 50 80 70"), 1u) << ::testing::PrintToString(backend().getEvents());
    EXPECT_EQ(backend().countEvents("pushClipRect 330 50"), 0u);
    EXPECT_EQ(backend().countEvents("pushClipRect 230 50 230 70"), 0u);
}

}  // namespace
