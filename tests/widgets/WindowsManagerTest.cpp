#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GuiFixture.h"
#include "ModalWindow.h"
#include "OverlayWindow.h"
#include "Panel.h"
#include "PopupWindow.h"
#include "WidgetHandler.h"
#include "Window.h"
#include "WindowsManager.h"

using vurel_test::GuiFixture;
using vurel_test::TestApplication;

namespace {

using Log = std::vector<std::string>;

gui::Widget::MouseCallback logger(Log& log, std::string text) {
    return std::make_shared<std::function<void(int, int, int)>>([&log, text](int, int, int) { log.push_back(text); });
}

// Window kinds that log when they draw, to see the stacking order.
template <class Base>
class Drawn : public Base {
public:
    Drawn(Log& log, std::string name) : log_(log), name_(std::move(name)) {}

protected:
    void draw_() override {
        log_.push_back(name_);
        Base::draw_();
    }

private:
    Log& log_;
    std::string name_;
};

// An application whose modal loop body runs a step of the test.
class ModalApplication : public TestApplication {
public:
    void update() override {
        if (step)
            step();
    }
    std::function<void()> step;
};

class WindowsManagerTest : public GuiFixture {
protected:
    void SetUp() override {
        GuiFixture::SetUp();
        auto modalApp = std::make_unique<ModalApplication>();
        modalApp_ = modalApp.get();
        app = std::move(modalApp);
        manager = gui().getWindowsManager(0);
    }

    template <class W>
    W* show(W* window, osg::Vec2i position, osg::Vec2i size, char const* name) {
        window->setPosition(position);
        window->setSize(size);
        window->addMouseCallback(gui::MouseCallbackDown, logger(log, std::string(name) + " down"));
        window->setVisible(true);
        return window;
    }
    gui::Window* window(osg::Vec2i position, osg::Vec2i size, char const* name) {
        return show(new gui::Window(), position, size, name);
    }
    gui::PopupWindow* popup(osg::Vec2i position, osg::Vec2i size, char const* name) {
        return show(new gui::PopupWindow(), position, size, name);
    }
    gui::ModalWindow* modal(osg::Vec2i position, osg::Vec2i size, char const* name) {
        auto* modal = new gui::ModalWindow();
        modal->setLockFlow(false);
        return show(modal, position, size, name);
    }
    void moveTo(int x, int y) {
        gui().mouseMove(x, y);
        gui().processMessages();
    }
    void click(int x, int y, double after = 1.0) {
        moveTo(x, y);
        app->advanceTime(after);
        gui().mouseDown(gui::MouseButtonLeft);
        gui().mouseUp(gui::MouseButtonLeft);
        gui().processMessages();
    }

    ModalApplication* modalApp_ = nullptr;
    gui::WindowsManager* manager = nullptr;
    Log log;
};

}  // namespace

TEST_F(WindowsManagerTest, AModalWindowTakesClicksBesideItButPopupsAboveItKeepTheirOwn) {
    window({0, 0}, {400, 400}, "below");
    gui::ModalWindow* dialog = modal({300, 300}, {200, 100}, "modal");
    gui::PopupWindow* menu = popup({50, 50}, {100, 100}, "popup");
    EXPECT_TRUE(gui().getHasMouseInputAtScreenPoint(700, 20)) << "a modal window blocks everywhere";

    click(60, 60);
    EXPECT_EQ(log, (Log{"popup down"}));
    EXPECT_TRUE(menu->getVisible(false));
    click(20, 20);
    EXPECT_EQ(log, (Log{"popup down", "modal down"}));
    EXPECT_FALSE(menu->getVisible(false)) << "the click beside closed the popup";
    EXPECT_EQ(manager->getActiveWindow(), dialog);

    // Hot keys stay with the modal window.
    int below = 0;
    int inModal = 0;
    gui::WindowBase::HotKey const f{static_cast<gui::KeyboardButton>('f')};
    manager->getNormalWindows().front()->addHotKeyCallback(f,
                                                           std::make_shared<std::function<void()>>([&] { ++below; }));
    dialog->addHotKeyCallback(f, std::make_shared<std::function<void()>>([&] { ++inModal; }));
    gui().keyDown(f.button, 0);
    gui().processMessages();
    EXPECT_EQ(inModal, 1);
    EXPECT_EQ(below, 0);

    dialog->close();
    click(20, 20);
    EXPECT_EQ(log.back(), "below down");
}

TEST_F(WindowsManagerTest, LockFlowRunsTheApplicationUntilTheDialogCloses) {
    window({0, 0}, {400, 400}, "below");
    auto* dialog = new gui::ModalWindow();
    dialog->setPosition({300, 300});
    dialog->setSize({200, 100});
    dialog->addMouseCallback(gui::MouseCallbackDown, logger(log, "modal down"));
    int closed = 0;
    dialog->addWidgetCallback(gui::getWidgetCallbackType(gui::WindowBase::closeCallbackName),
                              std::make_shared<std::function<void()>>([&closed] { ++closed; }));
    gui::PopupWindow* menu = nullptr;
    int step = 0;
    modalApp_->step = [&] {
        switch (step++) {
            case 0:
                click(20, 20);
                menu = popup({50, 50}, {100, 100}, "popup");
                break;
            case 1:
                click(60, 60);
                break;
            default:
                dialog->close();
        }
        frame();
    };
    dialog->setVisible(true);  // returns once the dialog is closed
    EXPECT_EQ(modalApp_->getModalCalls(), 3);
    EXPECT_EQ(log, (Log{"modal down", "popup down"}));
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(menu->getVisible(false)) << "hiding the dialog closes the popups";
    EXPECT_TRUE(manager->getModalWindows().empty());

    // Killed from inside its own loop, the dialog dies at the next delivery.
    gui::WidgetHandler* handle = dialog->handler();
    modalApp_->step = [dialog] { dialog->kill(); };
    dialog->setVisible(true);
    ASSERT_NE(gui::WidgetHandler::get(handle), nullptr);
    gui().processMessages();
    EXPECT_EQ(gui::WidgetHandler::get(handle), nullptr);

    // Without lock flow, a kill only hides: the window lives until shutdown.
    gui::ModalWindow* loose = modal({0, 0}, {10, 10}, "loose");
    loose->kill();
    gui().processMessages();
    EXPECT_NE(gui::WidgetHandler::get(loose->handler()), nullptr);
    EXPECT_FALSE(loose->getVisible(false));
}

TEST_F(WindowsManagerTest, PopupsCloseOnAClickElsewhereAndStayOnAClickInside) {
    window({0, 0}, {400, 400}, "window");
    gui::PopupWindow* first = popup({50, 50}, {100, 100}, "first");
    gui::PopupWindow* second = popup({200, 50}, {100, 100}, "second");
    EXPECT_EQ(manager->getActiveWindow(), second);

    // The first click inside keeps every active popup; afterwards only the clicked one is active.
    click(210, 60);
    EXPECT_TRUE(first->getVisible(false));
    EXPECT_TRUE(second->getVisible(false));
    EXPECT_FALSE(first->getActive());
    EXPECT_TRUE(second->getActive());
    click(220, 60);
    EXPECT_FALSE(first->getVisible(false));
    EXPECT_TRUE(second->getVisible(false));

    // The wheel never passes through a popup to the window below.
    int wheels = 0;
    manager->getNormalWindows().front()->addMouseWheelCallback(
        std::make_shared<std::function<bool(int, int, int)>>([&wheels](int, int, int) {
            ++wheels;
            return false;
        }));
    gui().mouseWheel(1);
    gui().processMessages();
    EXPECT_EQ(wheels, 0);

    click(380, 380);
    EXPECT_FALSE(second->getVisible(false));
    EXPECT_EQ(log, (Log{"second down", "second down", "window down"}));
    gui().mouseWheel(1);
    gui().processMessages();
    EXPECT_EQ(wheels, 1);
}

TEST_F(WindowsManagerTest, BringingForwardLeavesTheTransparentWindowInPlace) {
    gui::Window* a = window({0, 0}, {300, 300}, "a");
    gui::Window* b = window({100, 0}, {300, 300}, "b");
    gui::Window* glass = window({0, 0}, {500, 500}, "glass");
    glass->setTransparentForUserInput(true);

    // The mouse passes through the glass to the top window beneath it.
    click(200, 100);
    EXPECT_EQ(log, (Log{"b down"}));
    EXPECT_EQ(manager->getNormalWindows(), (gui::WindowsManager::WindowList{a, b, glass}));

    click(50, 100);
    EXPECT_EQ(log.back(), "a down");
    EXPECT_TRUE(a->getFocused());
    EXPECT_FALSE(b->getFocused());
    EXPECT_EQ(manager->getNormalWindows(), (gui::WindowsManager::WindowList{b, a, glass}));

    // A higher z-order stays on top of windows brought forward later.
    b->setZOrder(1);
    click(200, 100);
    EXPECT_EQ(log.back(), "b down");
    click(50, 100);
    EXPECT_EQ(log.back(), "a down");
    EXPECT_TRUE(a->getFocused());
    EXPECT_EQ(manager->getNormalWindows(), (gui::WindowsManager::WindowList{a, glass, b}));
}

TEST_F(WindowsManagerTest, CaptureIsReleasedOnlyByItsHolderOrItsWindowHiding) {
    gui::Window* holderWindow = window({0, 0}, {200, 200}, "window");
    auto* holder = new gui::Panel();
    auto* stranger = new gui::Panel();
    holderWindow->insertWidget(holder);
    holderWindow->insertWidget(stranger);
    holder->addMouseCallback(gui::MouseCallbackReleased, logger(log, "holder released"));

    manager->captureMouse(holder->handler());
    manager->captureMouse(holder->handler());
    manager->releaseMouse(stranger->handler());
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(manager->getCapturedWidget(), holder->handler());

    // While captured, every press goes to the holder, wherever the mouse is.
    holder->addMouseCallback(gui::MouseCallbackDown, logger(log, "holder down"));
    click(700, 500);
    EXPECT_EQ(log, (Log{"holder down"}));

    holderWindow->setVisible(false);
    EXPECT_EQ(log.back(), "holder released");
    EXPECT_EQ(manager->getCapturedWidget(), nullptr);
}

TEST_F(WindowsManagerTest, StackingOrderAndWhatTheMouseNeverHits) {
    auto* normal = show(new Drawn<gui::Window>(log, "normal"), {0, 0}, {100, 100}, "normal");
    auto* overlayLate = new Drawn<gui::OverlayWindow>(log, "overlay 2");
    auto* overlayEarly = new Drawn<gui::OverlayWindow>(log, "overlay 1");
    overlayEarly->setSize({800, 600});
    overlayEarly->setVisible(true);
    overlayLate->setVisible(true);
    auto* dialog = new Drawn<gui::ModalWindow>(log, "modal");
    dialog->setLockFlow(false);
    dialog->setVisible(true);
    show(new Drawn<gui::PopupWindow>(log, "popup"), {0, 0}, {10, 10}, "popup")->setVisible(false);
    auto* shownPopup = new Drawn<gui::PopupWindow>(log, "popup");
    shownPopup->setVisible(true);
    frame();
    EXPECT_EQ(log, (Log{"overlay 1", "overlay 2", "normal", "modal", "popup"}));

    // Overlays never take the mouse, nor a window without a cursor.
    dialog->setVisible(false);
    shownPopup->setVisible(false);
    normal->setHasCursor(false);
    log.clear();
    click(50, 50);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(manager->findWindowAtPoint({50, 50}), nullptr);
    normal->setHasCursor(true);
    EXPECT_EQ(manager->findWindowAtPoint({50, 50}), normal);
}

TEST_F(WindowsManagerTest, ADoubleClickNeedsBothPressesOnTheSameTarget) {
    gui::Window* left = window({0, 0}, {100, 100}, "left");
    window({200, 0}, {100, 100}, "right");
    left->addMouseCallback(gui::MouseCallbackDoubleDown, logger(log, "left double"));
    click(50, 50);
    click(250, 50, 0.1);
    click(50, 50, 0.1);
    click(60, 50, 0.1);
    EXPECT_EQ(log, (Log{"left down", "right down", "left down", "left double"}));
}
