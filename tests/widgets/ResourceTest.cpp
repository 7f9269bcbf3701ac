#include <gtest/gtest.h>

#include <string>

#include "GuiFixture.h"
#include "LogCapture.h"
#include "Panel.h"
#include "WidgetHandler.h"
#include "Window.h"
#include "WindowView.h"
#include "orm/Lua.h"

using vurel_test::dataPath;
using vurel_test::GuiFixture;

namespace {

class ResourceTest : public GuiFixture {
protected:
    std::string resource(char const* name) { return dataPath(std::string("resources/") + name); }
    int stackTop() { return lua_gettop(gui().getSkinLuaState()); }
};

}  // namespace

TEST_F(ResourceTest, AResourceBuildsAWindowThatTakesInput) {
    gui::WindowBase* window = gui().createWindowFromResource(resource("panels.lua").c_str());
    ASSERT_NE(window, nullptr);
    EXPECT_STREQ(window->getWidgetType(), "Window");
    EXPECT_EQ(window->getText(), L"Panels");
    EXPECT_EQ(window->getPosition(), osg::Vec2i(50, 40));
    EXPECT_TRUE(window->getVisible(false));
    EXPECT_FALSE(window->getDraggable());
    gui::Widget* inner = window->findWidgetByName(L"inner");
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->getText(), L"press me");
    gui::Widget* outer = window->findWidgetByName(L"outer");
    ASSERT_NE(outer, nullptr);
    EXPECT_TRUE(outer->getDrawToTarget());

    // A press on the inner panel runs the resource's function, which changes the panel.
    osg::Vec2i const p = inner->widgetToScreen({10, 10});
    gui().mouseMove(p.x, p.y);
    gui().mouseDown(gui::MouseButtonLeft);
    gui().mouseUp(gui::MouseButtonLeft);
    frame();
    EXPECT_EQ(inner->getText(), L"clicked 1");

    // The hot key from the resource closes the window.
    gui().keyDown(gui::KeyEscape, 0);
    frame();
    EXPECT_FALSE(window->getVisible(false));
    gui::Widget::destroy(window);
}

TEST_F(ResourceTest, BadResourcesBuildNothingAndNeverCrash) {
    size_t const alive = gui::WidgetHandler::getAliveCount();
    int const top = stackTop();
    for (char const* name : {"unknown_kind.lua", "runtime_error.lua", "syntax_error.lua", "not_a_window.lua",
                             "no_table.lua", "missing_file.lua"}) {
        EXPECT_EQ(gui().createWindowFromResource(resource(name).c_str()), nullptr) << name;
        EXPECT_EQ(gui::WidgetHandler::getAliveCount(), alive) << name << " left widgets alive";
        EXPECT_EQ(stackTop(), top) << name;
    }
    EXPECT_EQ(gui().createWindowFromResource(nullptr), nullptr);
}

TEST_F(ResourceTest, WrongFieldTypesAreLoggedAndSkipped) {
    vurel_test::LogCapture log;
    gui::WindowBase* window = gui().createWindowFromResource(resource("wrong_types.lua").c_str());
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->getPosition(), osg::Vec2i(7, 9)) << "valid fields still apply";
    EXPECT_TRUE(window->getEnabled());
    EXPECT_TRUE(log.contains("VUREL", 8, "Invalid value of property 'size' of Window"));
    EXPECT_TRUE(log.contains("VUREL", 8, "Unknown property 'noSuchProperty'"));
    EXPECT_TRUE(log.contains("VUREL", 8, "notAFunction"));
    ASSERT_NE(window->findWidgetByName(L"child"), nullptr);
    EXPECT_EQ(window->findWidgetByName(L"child")->getSize().y, 10) << "the good half of a vector stays";
    gui::Widget::destroy(window);
}

TEST_F(ResourceTest, LoadingIntoAnExistingWindow) {
    auto* window = new gui::Window();
    int const top = stackTop();
    gui().loadWindowFromResource(resource("panels.lua").c_str(), window);
    EXPECT_EQ(stackTop(), top);
    EXPECT_EQ(window->getText(), L"Panels");
    EXPECT_NE(window->findWidgetByName(L"inner"), nullptr);

    vurel_test::LogCapture log;
    gui().loadWindowFromResource(resource("missing_file.lua").c_str(), window);
    EXPECT_FALSE(log.lines().empty()) << "a missing file is logged";
    EXPECT_EQ(log.lines().front().level, 8);
    gui::Widget::destroy(window);
}

TEST_F(ResourceTest, LayoutsFromAResourcePlaceTheChildren) {
    gui::WindowBase* window = gui().createWindowFromResource(resource("layout.lua").c_str());
    ASSERT_NE(window, nullptr);
    frame();
    gui::Widget* row = window->findWidgetByName(L"row");
    gui::Widget* ok = window->findWidgetByName(L"ok");
    gui::Widget* cancel = window->findWidgetByName(L"cancel");
    ASSERT_TRUE(row && ok && cancel);
    EXPECT_EQ(row->getPosition().y, 34) << "below the top panel and the gap";
    EXPECT_EQ(row->getSize().x, window->getView()->getSize().x) << "stretched across the column";
    // Right-aligned: cancel ends at the row's right edge, ok 6 pixels before it.
    EXPECT_EQ(cancel->getPosition().x + cancel->getSize().x, row->getSize().x);
    EXPECT_EQ(ok->getPosition().x + ok->getSize().x + 6, cancel->getPosition().x);
    gui::Widget::destroy(window);
}

TEST_F(ResourceTest, LabelsAndAKillFromTheWindowsOwnCallback) {
    gui::WindowBase* window = gui().createWindowFromResource(resource("label_kill.lua").c_str());
    ASSERT_NE(window, nullptr);
    gui::Widget* label = window->findWidgetByName(L"title");
    ASSERT_NE(label, nullptr);
    EXPECT_STREQ(label->getWidgetType(), "Static");
    gui::WidgetHandler* handle = window->handler();
    window->close();  // its "window close" callback kills it through the queue
    EXPECT_NE(gui::WidgetHandler::get(handle), nullptr) << "alive until the next frame";
    frame();
    EXPECT_EQ(gui::WidgetHandler::get(handle), nullptr);
}
