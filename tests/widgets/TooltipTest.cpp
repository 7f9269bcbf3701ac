#include <gtest/gtest.h>

#include "GuiFixture.h"
#include "Panel.h"
#include "Tooltip.h"
#include "Window.h"
#include "rast/Font.h"
#include "rast/Renderer.h"
#include "WindowsManager.h"

namespace {

// A window at (100, 100) holding a panel with a tooltip at (10, 10) in its view.
class TooltipTest : public vurel_test::GuiFixture {
protected:
    void SetUp() override {
        skinFile = "test_skin.lua";
        GuiFixture::SetUp();
        rastRenderer::get()->getFontManager()->registerFixedWidthFont("fixed", 8, 16, 12, -4);
        window = new gui::Window();
        window->setPosition({100, 100});
        window->setSize({300, 200});
        panel = new gui::Panel();
        panel->setPosition({10, 10});
        panel->setSize({50, 30});
        panel->setTooltipText(L"Saves the file");
        window->insertWidget(panel);
        window->setVisible(true);
        frame();
        tooltip = gui().getWindowsManager(0)->getTooltip();
    }
    void TearDown() override {
        gui::Widget::destroy(window);
        GuiFixture::TearDown();
    }
    void at(double t) {
        app->setTime(t);
        frame();
    }
    void moveOverPanel(int dx = 0) {
        osg::Vec2i const p = panel->widgetToScreen({5 + dx, 5});
        gui().mouseMove(p.x, p.y);
    }

    gui::Window* window = nullptr;
    gui::Panel* panel = nullptr;
    gui::Tooltip* tooltip = nullptr;
};

}  // namespace

TEST_F(TooltipTest, ShowsAfterTheRestAndGoesAfterTheDuration) {
    ASSERT_NE(tooltip, nullptr);
    app->setTime(1.0);
    moveOverPanel();
    at(1.0);
    at(1.4);
    EXPECT_FALSE(tooltip->getVisible(false));
    at(1.5);
    EXPECT_TRUE(tooltip->getVisible(false));
    EXPECT_EQ(tooltip->getText(), L"Saves the file");
    EXPECT_GT(tooltip->getSize().x, 0) << "sized to its text";
    // Under the cursor: 20 pixels below for a cursor of 32, 10 for the test's 16.
    osg::Vec2i const mouse = gui().getMousePosition(0);
    EXPECT_EQ(tooltip->getPosition(), osg::Vec2i(mouse.x, mouse.y + 10));
    at(5.01);
    EXPECT_FALSE(tooltip->getVisible(false)) << "gone 4 s after the rest began";

    // A second one within the start time of the last one's end shows after 0.1 s.
    moveOverPanel(1);
    at(5.1);
    at(5.2);
    EXPECT_TRUE(tooltip->getVisible(false));
}

TEST_F(TooltipTest, APressHidesItAndTheNextMoveDoesNotRestart) {
    app->setTime(1.0);
    moveOverPanel();
    at(1.0);
    at(1.6);
    ASSERT_TRUE(tooltip->getVisible(false));
    gui().mouseDown(gui::MouseButtonLeft);
    gui().mouseUp(gui::MouseButtonLeft);
    at(1.7);
    EXPECT_FALSE(tooltip->getVisible(false));
    moveOverPanel(1);  // skipped: the first move after the press
    at(1.8);
    at(3.0);
    EXPECT_FALSE(tooltip->getVisible(false));
    moveOverPanel(2);
    at(3.0);
    at(3.6);
    EXPECT_TRUE(tooltip->getVisible(false));
}

TEST_F(TooltipTest, NoTextNoTooltipAndItStaysOnScreen) {
    panel->setTooltipText(L"");
    app->setTime(1.0);
    moveOverPanel();
    at(1.0);
    at(2.0);
    EXPECT_FALSE(tooltip->getVisible(false));

    // Near the bottom right corner it goes above the cursor and is pushed left.
    gui().getWindowsManager(0)->forceTooltipText(L"A rather long forced tooltip text", nullptr);
    window->setPosition({700, 550});
    frame();
    app->setTime(10.0);
    gui().mouseMove(790, 595);
    at(10.0);
    at(10.6);
    ASSERT_TRUE(tooltip->getVisible(false));
    osg::Vec2i const pos = tooltip->getPosition();
    EXPECT_EQ(pos.y, 595 - tooltip->getSize().y - 10);
    EXPECT_GT(tooltip->getSize().x, 200);
    EXPECT_EQ(pos.x + tooltip->getSize().x, 800) << "pushed left to end at the window's edge";
}
