#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "GuiFixture.h"
#include "ModalWindow.h"
#include "OffscreenWindow.h"
#include "OverlayWindow.h"
#include "Panel.h"
#include "PopupWindow.h"
#include "WidgetHandler.h"
#include "Window.h"
#include "WindowHeader.h"
#include "WindowView.h"
#include "WindowsManager.h"

using vurel_test::GuiFixture;

namespace {

using Log = std::vector<std::string>;

gui::Widget::MouseCallback logger(Log& log, std::string text) {
    return std::make_shared<std::function<void(int, int, int)>>(
        [&log, text](int, int, int button) { log.push_back(text + (button > 1 ? " " + std::to_string(button) : "")); });
}

gui::Panel* makePanel(osg::Vec2i position, osg::Vec2i size) {
    auto* panel = new gui::Panel();
    panel->setPosition(position);
    panel->setSize(size);
    return panel;
}

// Drives windows the way an application does: input through gui::GUI, then
// processMessages.
class WindowTest : public GuiFixture {
protected:
    void SetUp() override {
        GuiFixture::SetUp();
        manager = gui().getWindowsManager(0);
    }

    gui::Window* makeWindow(osg::Vec2i position, osg::Vec2i size) {
        auto* window = new gui::Window();
        window->setPosition(position);
        window->setSize(size);
        window->setVisible(true);
        return window;
    }
    void moveTo(int x, int y) {
        gui().mouseMove(x, y);
        gui().processMessages();
    }
    // Presses a second apart, so that none turns into a double click.
    void press(gui::MouseButton button = gui::MouseButtonLeft) {
        app->advanceTime(1.0);
        gui().mouseDown(button);
        gui().processMessages();
    }
    void release(gui::MouseButton button = gui::MouseButtonLeft) {
        gui().mouseUp(button);
        gui().processMessages();
    }
    void click(int x, int y, gui::MouseButton button = gui::MouseButtonLeft) {
        moveTo(x, y);
        press(button);
        release(button);
    }
    void key(gui::KeyboardButton button) {
        gui().keyDown(button, 0);
        gui().keyUp(button, 0);
        gui().processMessages();
    }

    gui::WindowsManager* manager = nullptr;
    Log log;
    // Outlives the test body: windows still report while the GUI shuts down.
    std::vector<std::tuple<bool, int, gui::WindowBase*>> reports;
};

}  // namespace

TEST_F(WindowTest, PartsFollowTheSizeAndANewWindowIsHidden) {
    auto* window = new gui::Window();
    EXPECT_FALSE(window->getVisible(false));
    EXPECT_FALSE(manager->hasWindows());
    window->setSize({300, 200});
    window->setText(L"Title");

    gui::WindowHeader* header = window->getHeader();
    gui::WindowView* view = window->getView();
    ASSERT_NE(header, nullptr);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(header->getSize(), osg::Vec2i(300, 20));
    EXPECT_EQ(view->getPosition(), osg::Vec2i(0, 20));
    EXPECT_EQ(view->getSize(), osg::Vec2i(300, 180));
    EXPECT_EQ(header->getDragger()->getSize(), osg::Vec2i(300, 20));
    EXPECT_EQ(header->getText(), L"Title");
    // The skin asks for a close button by default; the header remembers it.
    EXPECT_TRUE(header->getHasCloseButton());

    // Children go to the view; the window's own count is the view's.
    gui::Panel* panel = makePanel({0, 0}, {10, 10});
    window->insertWidget(panel);
    EXPECT_EQ(panel->getParent(), view->handler());
    EXPECT_EQ(window->getWidgetCount(), 1);
    EXPECT_EQ(window->getWidget(0), panel);

    window->setVisible(true);
    EXPECT_EQ(manager->getNormalWindows().size(), 1u);
    window->centerWindow();
    EXPECT_EQ(window->getPosition(), osg::Vec2i(250, 200));
    EXPECT_EQ(gui::WindowBase::calcWindowPositionInsideScreen({700, -5}, {300, 200}), osg::Vec2i(500, 0));
    gui::Widget::destroy(window);
    EXPECT_FALSE(manager->hasWindows());
}

TEST_F(WindowTest, APressTravelsFromTheManagerToTheDeepestWidgetFirst) {
    gui::Window* window = makeWindow({100, 100}, {300, 200});
    gui::Panel* outer = makePanel({10, 10}, {200, 150});
    gui::Panel* inner = makePanel({10, 10}, {50, 50});
    window->insertWidget(outer);
    outer->insertWidget(inner);
    for (auto [widget, name] :
         {std::pair<gui::Widget*, char const*>{window, "window"}, {outer, "outer"}, {inner, "inner"}}) {
        widget->addMouseCallback(gui::MouseCallbackDown, logger(log, std::string(name) + " down"));
        widget->addMouseCallback(gui::MouseCallbackUp, logger(log, std::string(name) + " up"));
    }

    click(130, 150);
    EXPECT_EQ(log, (Log{"inner down", "outer down", "window down", "inner up", "outer up", "window up"}));
    // Focus walks up to the window, which is now the active one.
    EXPECT_TRUE(inner->getFocused());
    EXPECT_TRUE(window->getFocused());
    EXPECT_EQ(manager->getActiveWindow(), window);

    // Beside every window nothing is taken.
    log.clear();
    click(600, 500);
    EXPECT_TRUE(log.empty());
}

TEST_F(WindowTest, DraggingHoldsTheMouseAndPutsTheWindowBackOnScreen) {
    gui::Window* window = makeWindow({100, 100}, {200, 150});
    gui::Window* other = makeWindow({500, 400}, {200, 150});
    other->addMouseCallback(gui::MouseCallbackEnter, logger(log, "other enter"));
    other->addMouseCallback(gui::MouseCallbackMove, logger(log, "other move"));

    // Moves outside the window still reach the dragger that holds the capture.
    moveTo(150, 110);
    press();
    EXPECT_EQ(manager->getCapturedWidget(), window->getHeader()->getDragger()->handler());
    moveTo(550, 410);
    EXPECT_EQ(window->getPosition(), osg::Vec2i(500, 400));
    EXPECT_TRUE(log.empty()) << "the window under the mouse sees nothing during a drag";

    // Released far off screen: 20 pixels of the 200 x 20 dragger stay inside.
    moveTo(-400, -300);
    release();
    EXPECT_EQ(window->getPosition(), osg::Vec2i(-180, 0));
    EXPECT_EQ(manager->getCapturedWidget(), nullptr);

    moveTo(-170, 10);
    press();
    moveTo(2000, 2000);
    release();
    EXPECT_EQ(window->getPosition(), osg::Vec2i(780, 580));

    // A window that is not draggable stays where it is.
    window->setPosition({100, 100});
    window->setDraggable(false);
    moveTo(150, 110);
    press();
    moveTo(300, 300);
    release();
    EXPECT_EQ(window->getPosition(), osg::Vec2i(100, 100));
}

TEST_F(WindowTest, ResizeBandsReportTheirCursorsAndResize) {
    gui().setSurfaceMouseCursorCallback(
        0, [this](bool shown, int cursor, gui::WindowBase* window) { reports.emplace_back(shown, cursor, window); });
    gui::Window* window = makeWindow({100, 100}, {200, 150});
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports.back(), std::make_tuple(true, 0, static_cast<gui::WindowBase*>(window)));
    window->setResizable(true);
    gui::Panel* child = makePanel({0, 0}, {60, 60});
    child->addMouseCallback(gui::MouseCallbackDown, logger(log, "child down"));
    child->addMouseCallback(gui::MouseCallbackMove, logger(log, "child move"));
    window->insertWidget(child);

    struct Band {
        osg::Vec2i point;
        int cursor;
    };
    for (Band band : {Band{{102, 175}, 41}, Band{{298, 175}, 41}, Band{{200, 102}, 39}, Band{{200, 248}, 39},
                      Band{{102, 102}, 40}, Band{{298, 248}, 40}, Band{{298, 102}, 38}, Band{{102, 248}, 38}}) {
        moveTo(band.point.x, band.point.y);
        EXPECT_EQ(std::get<1>(reports.back()), band.cursor) << band.point.x << "," << band.point.y;
        EXPECT_EQ(window->getMouseCursor(), band.cursor);
    }
    // Back inside, the arrow goes and the child sees moves again.
    moveTo(110, 130);
    EXPECT_EQ(std::get<1>(reports.back()), 0);
    EXPECT_EQ(log, (Log{"child move"}));

    // A right press in the band passes to the child.
    log.clear();
    moveTo(102, 130);
    EXPECT_TRUE(log.empty()) << "no moves reach the children inside the band";
    press(gui::MouseButtonRight);
    release(gui::MouseButtonRight);
    EXPECT_EQ(log, (Log{"child down 2"}));

    // A left press there resizes from the left; a right press meanwhile reaches nobody.
    log.clear();
    press();
    press(gui::MouseButtonRight);
    moveTo(92, 140);
    release();
    EXPECT_EQ(window->getPosition(), osg::Vec2i(90, 100));
    EXPECT_EQ(window->getSize(), osg::Vec2i(210, 150));
    EXPECT_EQ(manager->getCapturedWidget(), nullptr);
    EXPECT_TRUE(log.empty());

    // The bottom-right corner grows both ways.
    moveTo(298, 248);
    press();
    moveTo(318, 238);
    release();
    EXPECT_EQ(window->getSize(), osg::Vec2i(230, 140));
}

TEST_F(WindowTest, HotKeysMatchTheirModifiersExactly) {
    gui::Window* window = makeWindow({0, 0}, {100, 100});
    auto const f = static_cast<gui::KeyboardButton>('f');
    int withModifiers = 0;
    int plain = 0;
    auto plainCallback = std::make_shared<std::function<void()>>([&plain] { ++plain; });
    window->addHotKeyCallback({f, false, false, false}, plainCallback);
    window->addHotKeyCallback({f, true, true, false},
                              std::make_shared<std::function<void()>>([&withModifiers] { ++withModifiers; }));

    // Hot keys reach windows that are not focused too.
    app->setKeyPressed(gui::KeyLeftCtrl, true);
    app->setKeyPressed(gui::KeyRightAlt, true);
    key(f);
    EXPECT_EQ(withModifiers, 1);
    EXPECT_EQ(plain, 0);
    app->setKeyPressed(gui::KeyLeftCtrl, false);
    app->setKeyPressed(gui::KeyRightAlt, false);
    key(f);
    EXPECT_EQ(withModifiers, 1);
    EXPECT_EQ(plain, 1);

    EXPECT_TRUE(window->removeHotKeyCallback({f, false, false, false}, plainCallback));
    EXPECT_FALSE(window->removeHotKeyCallback({f, false, false, false}, plainCallback));
    key(f);
    EXPECT_EQ(plain, 1);
}

TEST_F(WindowTest, TabWalksTheTabOrderAndShiftWalksBack) {
    gui::Window* window = makeWindow({0, 0}, {300, 300});
    gui::Panel* second = makePanel({0, 0}, {10, 10});
    gui::Panel* first = makePanel({20, 0}, {10, 10});
    gui::Panel* third = makePanel({40, 0}, {10, 10});
    gui::Panel* outside = makePanel({60, 0}, {10, 10});
    second->setTabOrder(2);
    first->setTabOrder(1);
    third->setTabOrder(3);
    for (gui::Panel* panel : {second, first, third, outside})
        window->insertWidget(panel);
    window->setFocused(true);

    key(gui::KeyTab);
    EXPECT_TRUE(first->getFocused());
    key(gui::KeyTab);
    EXPECT_TRUE(second->getFocused());
    EXPECT_FALSE(first->getFocused());
    key(gui::KeyTab);
    key(gui::KeyTab);
    EXPECT_TRUE(first->getFocused()) << "wraps to the first";

    app->setKeyPressed(gui::KeyRightShift, true);
    key(gui::KeyTab);
    EXPECT_TRUE(third->getFocused()) << "shift wraps back to the last";
    key(gui::KeyTab);
    EXPECT_TRUE(second->getFocused());
    app->setKeyPressed(gui::KeyRightShift, false);

    // Without any tab order, Tab leaves the focus where it is.
    gui::Window* plainWindow = makeWindow({400, 0}, {100, 100});
    gui::Panel* lone = makePanel({0, 0}, {10, 10});
    plainWindow->insertWidget(lone);
    click(405, 25);
    ASSERT_TRUE(lone->getFocused());
    key(gui::KeyTab);
    EXPECT_TRUE(lone->getFocused());
    EXPECT_TRUE(plainWindow->getFocused());
}

TEST_F(WindowTest, KeysGoOnlyToTheFocusedWindow) {
    gui::Window* window = makeWindow({0, 0}, {100, 100});
    int keys = 0;
    window->addKeyboardCallback(
        gui::KeyboardCallbackDown,
        std::make_shared<std::function<bool(gui::KeyboardButton, int)>>([&keys](gui::KeyboardButton, int) {
            ++keys;
            return true;
        }));
    key(gui::KeySpace);
    EXPECT_EQ(keys, 0);
    window->setFocused(true);
    key(gui::KeySpace);
    EXPECT_EQ(keys, 1);
}

TEST_F(WindowTest, WidgetsAndWindowsDyingInTheirOwnHandlers) {
    gui::Window* window = makeWindow({100, 100}, {300, 200});
    gui::Panel* outer = makePanel({0, 0}, {200, 150});
    gui::Panel* inner = makePanel({0, 0}, {50, 50});
    window->insertWidget(outer);
    outer->insertWidget(inner);
    gui::WidgetHandler* innerHandle = inner->handler();
    // Two callbacks, so the walk goes on after the first destroyed the widget.
    inner->addMouseCallback(gui::MouseCallbackDown, std::make_shared<std::function<void(int, int, int)>>(
                                                        [inner](int, int, int) { gui::Widget::destroy(inner); }));
    inner->addMouseCallback(gui::MouseCallbackDown, logger(log, "inner down"));
    outer->addMouseCallback(gui::MouseCallbackDown, logger(log, "outer down"));

    click(110, 130);
    EXPECT_EQ(gui::WidgetHandler::get(innerHandle), nullptr);
    EXPECT_EQ(log, (Log{"outer down"}));
    EXPECT_EQ(outer->getWidgetCount(), 0);

    // The window kills itself from its own handler, twice over, and is even
    // destroyed: it dies once, at the next processMessages.
    gui::WidgetHandler* windowHandle = window->handler();
    gui::WidgetHandler* viewHandle = window->getView()->handler();
    gui::WidgetHandler* outerHandle = outer->handler();
    window->addMouseCallback(gui::MouseCallbackDown,
                             std::make_shared<std::function<void(int, int, int)>>([window](int, int, int) {
                                 window->kill();
                                 window->kill();
                                 gui::Widget::destroy(window);
                             }));
    press();
    ASSERT_NE(gui::WidgetHandler::get(windowHandle), nullptr);
    EXPECT_FALSE(window->getVisible(false));
    EXPECT_FALSE(manager->hasWindows());
    release();  // delivered after the kill, which now deletes the window
    EXPECT_EQ(gui::WidgetHandler::get(windowHandle), nullptr);
    EXPECT_EQ(gui::WidgetHandler::get(viewHandle), nullptr);
    EXPECT_EQ(gui::WidgetHandler::get(outerHandle), nullptr);
    frame();
    click(110, 130);
}

TEST_F(WindowTest, DestroyingTheGuiTakesEveryLiveWindowAlong) {
    // One of each kind, shown where that means something, with children and
    // an overlay widget, while a drag holds the mouse.
    gui::Window* window = makeWindow({100, 100}, {200, 150});
    window->insertWidget(makePanel({0, 0}, {20, 20}));
    window->insertOverlayWidget(makePanel({5, 5}, {10, 10}));
    auto* modal = new gui::ModalWindow();
    modal->setLockFlow(false);
    modal->setSize({100, 100});
    modal->insertWidget(makePanel({0, 0}, {20, 20}));
    auto* overlay = new gui::OverlayWindow();
    overlay->setVisible(true);
    new gui::OffscreenWindow();
    auto* popup = new gui::BuddyWindow();
    popup->setSize({50, 50});
    popup->setBuddyWidget(window);
    new gui::Panel();  // a widget outside any window

    modal->setVisible(true);
    popup->setVisible(true);
    gui::Panel* held = makePanel({0, 0}, {10, 10});
    modal->insertWidget(held);
    manager->captureMouse(held->handler());
    frame();
    EXPECT_EQ(manager->getModalWindows().size(), 1u);
    EXPECT_EQ(manager->getPopupWindows().size(), 1u);

    gui::GUI::destroy();
    EXPECT_EQ(gui::WidgetHandler::getRecordCount(), 0u);
}
