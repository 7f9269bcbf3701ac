#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GuiFixture.h"
#include "Panel.h"
#include "Skin/GraphicCommands.h"
#include "WidgetHandler.h"
#include "layouts/Layout.h"
#include "rast/Renderer.h"

using vurel_test::GuiFixture;

namespace {

// A panel that logs its mouse events by name, so routing order can be checked.
class LoggingPanel : public gui::Panel {
public:
    LoggingPanel(std::vector<std::string>& log, std::string name) : log_(log), name_(std::move(name)) {
        auto add = [this](gui::MouseCallbackType type, char const* what) {
            addMouseCallback(type, std::make_shared<std::function<void(int, int, int)>>(
                                       [this, what](int, int, int) { log_.push_back(name_ + " " + what); }));
        };
        add(gui::MouseCallbackDown, "down");
        add(gui::MouseCallbackUp, "up");
        add(gui::MouseCallbackEnter, "enter");
        add(gui::MouseCallbackLeave, "leave");
    }

private:
    std::vector<std::string>& log_;
    std::string name_;
};

// A layout that counts its passes.
class CountingLayout : public gui::Layout {
public:
    explicit CountingLayout(int& passes) : passes_(passes) {}
    void updateSize() override { ++passes_; }

private:
    int& passes_;
};

class ContainerTest : public GuiFixture {
protected:
    // root (0,0 200x200) > middle (10,10 100x100) > leaf (10,10 20x20)
    void SetUp() override {
        GuiFixture::SetUp();
        root = new LoggingPanel(log, "root");
        middle = new LoggingPanel(log, "middle");
        leaf = new LoggingPanel(log, "leaf");
        root->setSize({200, 200});
        middle->setPosition({10, 10});
        middle->setSize({100, 100});
        leaf->setPosition({10, 10});
        leaf->setSize({20, 20});
        root->insertWidget(middle);
        middle->insertWidget(leaf);
    }
    void TearDown() override {
        gui::Widget::destroy(root);
        GuiFixture::TearDown();
    }

    std::vector<std::string> log;
    LoggingPanel* root = nullptr;
    LoggingPanel* middle = nullptr;
    LoggingPanel* leaf = nullptr;
};

}  // namespace

TEST_F(ContainerTest, PressesRouteDeepestFirstAndFocusWalksUp) {
    root->onMouseMove({25, 25});
    // A container updates its own hover before raising its own enter.
    EXPECT_EQ(log, (std::vector<std::string>{"leaf enter", "middle enter"}));
    log.clear();
    root->onMouseDown({25, 25}, gui::MouseButtonLeft);
    root->onMouseUp({25, 25}, gui::MouseButtonLeft);
    EXPECT_EQ(log, (std::vector<std::string>{"leaf down", "middle down", "root down", "leaf up", "middle up",
                                             "root up"}));
    EXPECT_TRUE(leaf->getFocused());
    EXPECT_TRUE(middle->getFocused());
    EXPECT_TRUE(root->getFocused());
    EXPECT_EQ(root->getFocusedWidget(), middle);

    // Leaving the leaf: it gets its leave, and a disabled child is never hovered.
    log.clear();
    root->onMouseMove({60, 60});
    EXPECT_EQ(log, (std::vector<std::string>{"leaf leave"}));
    leaf->setEnabled(false);
    log.clear();
    root->onMouseMove({25, 25});
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(middle->getHoveredWidget(), nullptr);
}

TEST_F(ContainerTest, AChildThatHidesItselfOnPressGetsNoFocus) {
    auto hide = std::make_shared<std::function<void(int, int, int)>>([this](int, int, int) { leaf->setVisible(false); });
    leaf->addMouseCallback(gui::MouseCallbackDown, hide);
    root->onMouseMove({25, 25});
    root->onMouseDown({25, 25}, gui::MouseButtonLeft);
    EXPECT_FALSE(leaf->getFocused());
    EXPECT_TRUE(middle->getFocused()) << "the press still focuses the middle panel itself";
    EXPECT_EQ(middle->getFocusedWidget(), nullptr);
}

TEST_F(ContainerTest, AChildDestroyedInItsOwnCallbackIsForgotten) {
    gui::WidgetHandler* leafHandle = leaf->handler();
    auto die = std::make_shared<std::function<void(int, int, int)>>([this](int, int, int) {
        gui::Widget::destroy(leaf);
        leaf = nullptr;
    });
    leaf->addMouseCallback(gui::MouseCallbackUp, die);
    root->onMouseMove({25, 25});
    root->onMouseDown({25, 25}, gui::MouseButtonLeft);
    root->onMouseUp({25, 25}, gui::MouseButtonLeft);
    EXPECT_EQ(gui::WidgetHandler::get(leafHandle), nullptr);
    EXPECT_EQ(middle->getWidgetCount(), 0);
    EXPECT_EQ(middle->getHoveredWidget(), nullptr);
    EXPECT_EQ(middle->getFocusedWidget(), nullptr);
    root->onMouseMove({26, 26});  // routing after the death is safe
}

TEST_F(ContainerTest, InsertingMovesRemovingKeepsAlive) {
    auto* other = new gui::Panel();
    int passes = 0;
    auto* layout = new CountingLayout(passes);
    middle->setLayout(layout->handler());
    EXPECT_EQ(passes, 1) << "a new layout runs at once";

    // Moving the leaf to another parent marks the old parent's layout for the next redraw.
    other->insertWidget(leaf, 5);
    EXPECT_EQ(middle->getWidgetCount(), 0);
    EXPECT_EQ(leaf->getParent(), other->handler());
    gui().processMessages();
    EXPECT_EQ(passes, 2);

    // Inserting the same widget twice changes nothing, not even the order; -1 and past the end append.
    auto* second = new gui::Panel();
    other->insertWidget(second, -1);
    other->insertWidget(leaf, 1);
    EXPECT_EQ(other->getWidgetIndex(leaf), 0);
    EXPECT_EQ(other->getWidgetIndex(second), 1);
    EXPECT_EQ(other->getWidgetIndex(nullptr), -1);
    EXPECT_EQ(other->getWidget(2), nullptr);

    other->removeWidget(second);
    EXPECT_EQ(second->getParent(), nullptr);
    gui::Widget::destroy(second);

    // The same layout again keeps it; another one destroys the old.
    gui::LayoutHandler* handle = layout->handler();
    middle->setLayout(handle);
    EXPECT_EQ(gui::LayoutHandler::get(handle), layout);
    middle->setLayout(nullptr);
    EXPECT_EQ(gui::LayoutHandler::get(handle), nullptr);

    leaf = nullptr;  // dies with `other`
    gui::Widget::destroy(other);
}

TEST_F(ContainerTest, HitTestsFindTheTopChild) {
    auto* cover = new gui::Panel();
    cover->setPosition({0, 0});
    cover->setSize({50, 50});
    middle->insertWidget(cover);  // drawn after the leaf: on top
    EXPECT_EQ(root->findWidgetAtScreenPoint({25, 25}), cover);
    EXPECT_EQ(root->getWidgetAtScreenPoint({25, 25}), middle);
    cover->setVisible(false);
    EXPECT_EQ(root->findWidgetAtScreenPoint({25, 25}), leaf);
    EXPECT_EQ(root->findWidgetAtScreenPoint({500, 500}), nullptr);
    EXPECT_EQ(root->findWidgetAtScreenPoint({150, 150}), root);

    leaf->setName(L"deep");
    cover->setName(L"deep");
    EXPECT_EQ(middle->findWidgetByName(L"deep"), leaf) << "the first direct child";
}

namespace {

// Replays one recorded frame as an application's render side does.
void replay(gui::GraphicCommands& commands) {
    for (gui::GraphicCommand* c : commands.getCommands())
        c->doRedraw();
    for (gui::GraphicCommand* c : commands.getCommands())
        c->draw();
    for (gui::GraphicCommand* c : commands.getCommands())
        c->release();
    commands.clear();
}

}  // namespace

TEST_F(ContainerTest, RecordedRoadReplaysToTheSameEventsAsTheDirectRoad) {
    for (bool clipping : {true, false}) {
        gui().enableClipping(clipping);
        gui().processMessages();
        gui().doRedraw();

        backend().clearEvents();
        root->draw();
        std::vector<std::string> const direct = backend().getEvents();

        backend().clearEvents();
        gui::GraphicCommands commands;
        root->make(&commands);
        replay(commands);
        std::vector<std::string> const recorded = backend().getEvents();

        EXPECT_EQ(direct, recorded) << "clipping " << clipping;
        EXPECT_EQ(backend().countEvents("pushClipRect"), clipping ? 3u : 0u);
        EXPECT_EQ(backend().countEvents("pushClipRect"), backend().countEvents("popClipRect"));
        EXPECT_GE(backend().countEvents("modelView"), 3u) << "a translation into each of three widgets";
        EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
    }
    gui().enableClipping(true);
}
