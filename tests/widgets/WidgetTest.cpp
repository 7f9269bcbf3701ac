#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GuiFixture.h"
#include "LogCapture.h"
#include "Panel.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "WidgetHandler.h"

using vurel_test::GuiFixture;

namespace {

int callbackId(char const* name) { return gui::getWidgetCallbackType(name); }

// Counts the widget callbacks of one kind.
gui::Widget::WidgetCallback counter(int& count) {
    return std::make_shared<std::function<void()>>([&count] { ++count; });
}

class WidgetTest : public GuiFixture {
protected:
    void SetUp() override {
        GuiFixture::SetUp();
        gui().processMessages();  // start from an empty dirty list
    }
};

}  // namespace

TEST_F(WidgetTest, NewWidgetsAreRedrawnOnceAndHandlesOutliveThem) {
    size_t const before = gui::Widget::getRedrawQueueSize();
    auto* panel = new gui::Panel();
    EXPECT_EQ(gui::Widget::getRedrawQueueSize(), before + 1) << "dirty without anybody calling setDirty";
    EXPECT_TRUE(panel->getDirty());
    gui().processMessages();
    EXPECT_FALSE(panel->getDirty());
    EXPECT_EQ(gui::Widget::getRedrawQueueSize(), 0u);

    gui::WidgetHandler* handle = panel->handler();
    EXPECT_EQ(gui::WidgetHandler::get(handle), panel);
    gui::Widget::destroy(panel);
    EXPECT_EQ(gui::WidgetHandler::get(handle), nullptr);
    gui::Widget::destroy(nullptr);
}

TEST_F(WidgetTest, ChangesDuringRedrawAllWaitAndTheDeadAreSkipped) {
    auto* first = new gui::Panel();
    auto* second = new gui::Panel();
    auto* third = new gui::Panel();
    std::vector<std::string> order;
    // The first destroys the second before its turn, and marks the third dirty again.
    first->setRedrawCallback([&] {
        order.push_back("first");
        gui::Widget::destroy(second);
        third->setDirty(0);
    });
    second->setRedrawCallback([&] { order.push_back("second"); });
    third->setRedrawCallback([&] { order.push_back("third"); });
    gui::Widget::redrawAll();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "third"}));
    // A widget made dirty during the pass, after its own turn, waits for the next pass.
    order.clear();
    first->setRedrawCallback([&] { order.push_back("first"); });
    third->setRedrawCallback([&] {
        order.push_back("third");
        first->setDirty(0);
    });
    first->setDirty(0);
    third->setDirty(0);
    gui::Widget::redrawAll();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "third"}));
    order.clear();
    third->setRedrawCallback(nullptr);
    gui::Widget::redrawAll();
    EXPECT_EQ(order, (std::vector<std::string>{"first"}));
    gui::Widget::destroy(first);
    gui::Widget::destroy(third);
}

TEST_F(WidgetTest, HiddenWidgetsAreNotRepaintedUntilShown) {
    auto* panel = new gui::Panel();
    gui().processMessages();
    gui().doRedraw();
    panel->setVisible(false);
    gui().processMessages();
    EXPECT_EQ(gui::Widget::getDoRedrawQueueSize(), 0u) << "hidden: no repaint";
    panel->setText(L"changed while hidden");
    gui().processMessages();
    EXPECT_EQ(gui::Widget::getDoRedrawQueueSize(), 0u);
    panel->setVisible(true);
    gui().processMessages();
    EXPECT_EQ(gui::Widget::getDoRedrawQueueSize(), 1u);
    gui::Widget::destroy(panel);
    EXPECT_EQ(gui::Widget::getDoRedrawQueueSize(), 0u);
}

TEST_F(WidgetTest, SettersChangeOnlyOnARealChange) {
    gui::Panel panel;
    int sizes = 0, positions = 0;
    panel.addWidgetCallback(callbackId(gui::Widget::sizeCallbackName), counter(sizes));
    panel.addWidgetCallback(callbackId(gui::Widget::positionCallbackName), counter(positions));
    gui::skin::Data* data = panel.getWidgetSkin()->getData();
    data->setMinSize({10, 0});
    data->setMaxSize({50, 40});

    panel.setSize({5, 100});  // validated to (10, 40)
    EXPECT_EQ(panel.getSize(), osg::Vec2i(10, 40));
    EXPECT_EQ(sizes, 1);
    panel.setSize({-3, 60});  // validates to the present size: nothing raised
    EXPECT_EQ(sizes, 1);
    panel.setPosition({3, 4});
    panel.setPosition({3, 4});
    EXPECT_EQ(positions, 1);

    // Zoom: 0 or below is ignored; limits scale by the zoom truncated to an integer.
    panel.setZoom(0.0f);
    EXPECT_FLOAT_EQ(panel.getZoom(), 1.0f);
    panel.setZoom(1.5f);
    EXPECT_EQ(panel.getMaxSize(), osg::Vec2i(50, 40));
    panel.setZoom(2.0f);
    EXPECT_EQ(panel.getMaxSize(), osg::Vec2i(100, 80));
    panel.setZoom(1.0f);

    // Opacity: out of range is ignored; only crossing 1.0 marks dirty.
    gui().processMessages();
    panel.setOpacity(1.5f);
    EXPECT_FLOAT_EQ(panel.getOpacity(), 1.0f);
    panel.setOpacity(0.5f);
    EXPECT_TRUE(panel.getDirty());
    EXPECT_TRUE(panel.getDrawToTarget());
    gui().processMessages();
    panel.setOpacity(0.7f);
    EXPECT_FALSE(panel.getDirty());
    panel.setOpacity(1.0f);
    EXPECT_TRUE(panel.getDirty());
    EXPECT_FALSE(panel.getDrawToTarget());

    // Tab order needs a focusable widget; a panel is one.
    panel.setTabOrder(3);
    EXPECT_EQ(panel.getTabOrder(), 3);
}

TEST_F(WidgetTest, CallbacksByPointerAndTheirOrder) {
    gui::Panel panel;
    std::vector<int> calls;
    auto make = [&calls](int n) {
        return std::make_shared<std::function<void(int, int, int)>>([&calls, n](int, int, int) { calls.push_back(n); });
    };
    auto a = make(1), b = make(2), c = make(3);
    panel.addMouseCallback(gui::MouseCallbackDown, a);
    panel.addMouseCallback(gui::MouseCallbackDown, b);
    panel.addMouseCallback(gui::MouseCallbackDown, c);
    panel.addMouseCallback(gui::MouseCallbackDown, a);  // present: nothing
    panel.removeMouseCallback(gui::MouseCallbackDown, b);
    panel.Widget::onMouseDown({0, 0}, gui::MouseButtonLeft);
    EXPECT_EQ(calls, (std::vector<int>{1, 3}));
    EXPECT_TRUE(panel.getHasMouseInputAtScreenPoint({0, 0}));

    // A wheel callback alone is no mouse input; the first that answers true ends the wheel.
    gui::Panel wheelOnly;
    int wheels = 0;
    auto takes = std::make_shared<std::function<bool(int, int, int)>>([&](int, int, int) { return ++wheels > 0; });
    auto never = std::make_shared<std::function<bool(int, int, int)>>([&](int, int, int) {
        ADD_FAILURE() << "after one answered true";
        return false;
    });
    wheelOnly.addMouseWheelCallback(takes);
    wheelOnly.addMouseWheelCallback(never);
    EXPECT_FALSE(wheelOnly.getHasMouseInputAtScreenPoint({0, 0}));
    EXPECT_TRUE(wheelOnly.Widget::onMouseWheel({0, 0}, 1));

    // Keyboard callbacks all run; the answer is true when any was.
    int keys = 0;
    auto no = std::make_shared<std::function<bool(gui::KeyboardButton, int)>>([&](gui::KeyboardButton, int) {
        ++keys;
        return false;
    });
    auto yes = std::make_shared<std::function<bool(gui::KeyboardButton, int)>>([&](gui::KeyboardButton, int) {
        ++keys;
        return true;
    });
    panel.addKeyboardCallback(gui::KeyboardCallbackDown, yes);
    panel.addKeyboardCallback(gui::KeyboardCallbackDown, no);
    gui::Widget& asWidget = panel;
    EXPECT_TRUE(asWidget.Widget::onKeyDown(gui::KeyReturn, 0));
    EXPECT_EQ(keys, 2);

    // An empty function is the caller's error and throws.
    panel.addWidgetCallback(callbackId("empty"), std::make_shared<std::function<void()>>());
    struct Raiser : gui::Panel {
        void raise(int id) { callWidgetCallbacks_(id); }
    } raiser;
    raiser.addWidgetCallback(callbackId("empty"), std::make_shared<std::function<void()>>());
    EXPECT_THROW(raiser.raise(callbackId("empty")), std::bad_function_call);
}

TEST_F(WidgetTest, LocalizeAndCopyParams) {
    gui::Panel panel;
    gui::Widget::LocalizationMap map{{L"ok", L"OK"}, {L"tip", L"Press"}};
    panel.setText(L"$ok");
    panel.setTooltipText(L"$missing");
    panel.localize(map);
    EXPECT_EQ(panel.getText(), L"OK");
    EXPECT_EQ(panel.getTooltipText(), L"$missing") << "an unknown key stays, $ included";

    panel.setName(L"source");
    panel.setPosition({1, 2});
    panel.setSize({30, 40});
    panel.setEnabled(false);
    panel.setResourceString("res");
    auto* copy = static_cast<gui::Panel*>(panel.clone());
    EXPECT_EQ(copy->getName(), L"source");
    EXPECT_EQ(copy->getText(), L"OK");
    EXPECT_EQ(copy->getSize(), osg::Vec2i(30, 40));
    EXPECT_FALSE(copy->getEnabled());
    EXPECT_EQ(copy->getResourceString(), "res");
    gui::Widget::destroy(copy);

    // An empty name matches a widget with an empty name.
    gui::Panel unnamed;
    EXPECT_EQ(unnamed.findWidgetByName(L""), &unnamed);
}

TEST_F(WidgetTest, ScreenCoordinatesAndEdgesInside) {
    auto* outer = new gui::Panel();
    auto* inner = new gui::Panel();
    outer->setPosition({100, 50});
    outer->insertWidget(inner);
    inner->setPosition({10, 5});
    inner->setSize({20, 10});
    EXPECT_EQ(inner->widgetToScreen({1, 1}), osg::Vec2i(111, 56));
    EXPECT_EQ(inner->screenToWidget({111, 56}), osg::Vec2i(1, 1));
    EXPECT_TRUE(inner->getScreenPointInside({130, 65})) << "right and bottom edges are inside";
    EXPECT_FALSE(inner->getScreenPointInside({131, 65}));
    EXPECT_EQ(inner->getRoot(), outer);
    EXPECT_EQ(outer->getRoot(), nullptr);
    gui::Widget::destroy(outer);
}
