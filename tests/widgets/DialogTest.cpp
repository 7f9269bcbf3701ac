#include <gtest/gtest.h>

#include <string>

#include "Button.h"
#include "CheckBox.h"
#include "ClickFixture.h"
#include "CloseButton.h"
#include "RadioButton.h"
#include "Skin/ButtonSkins.h"
#include "WidgetHandler.h"
#include "WindowBase.h"
#include "WindowHeader.h"
#include "orm/Lua.h"

namespace {

// The dialog of tests/data/resources/dialog.lua, clicked through as a user would.
class DialogTest : public vurel_test::ClickFixture {
protected:
    void SetUp() override {
        ClickFixture::SetUp();
        window = gui().createWindowFromResource(vurel_test::dataPath("resources/dialog.lua").c_str());
        ASSERT_NE(window, nullptr);
        frame();
    }

    template <class W>
    W* find(wchar_t const* name) {
        auto* widget = dynamic_cast<W*>(window->findWidgetByName(name));
        EXPECT_NE(widget, nullptr) << "no such widget";
        return widget;
    }

    // What the resource's callbacks wrote, then forgotten.
    std::string takeLog() {
        lua_State* L = gui().getSkinLuaState();
        lua_getglobal(L, "dialogLog");
        std::string log = lua_isstring(L, -1) ? lua_tostring(L, -1) : "";
        lua_pop(L, 1);
        lua_pushnil(L);
        lua_setglobal(L, "dialogLog");
        return log;
    }

    gui::WindowBase* window = nullptr;
};

}  // namespace

TEST_F(DialogTest, ClickingThroughTheDialogRunsItsCallbacks) {
    auto* sound = find<gui::CheckBox>(L"sound");
    auto* music = find<gui::CheckBox>(L"music");
    auto* easy = find<gui::RadioButton>(L"easy");
    auto* normal = find<gui::RadioButton>(L"normal");
    auto* hard = find<gui::RadioButton>(L"hard");
    auto* ok = find<gui::Button>(L"ok");
    auto* cancel = find<gui::Button>(L"cancel");
    ASSERT_TRUE(sound && music && easy && normal && hard && ok && cancel);
    EXPECT_EQ(sound->getState(), 1) << "the resource's state property";
    EXPECT_EQ(easy->getState(), 1);
    EXPECT_NE(sound->getCheckBoxSkin()->getCheckImage(), nullptr);
    EXPECT_EQ(music->getCheckBoxSkin()->getCheckImage(), nullptr);

    // OK and Cancel sit at the right end of their row, in that order.
    gui::Widget* row = window->findWidgetByName(L"buttons");
    int const right = row->getClientRect().max.x;
    EXPECT_EQ(cancel->getPosition().x + cancel->getSize().x, right);
    EXPECT_EQ(ok->getPosition().x + ok->getSize().x + 6, cancel->getPosition().x);

    click(music);
    click(sound);
    EXPECT_EQ(music->getState(), 1);
    EXPECT_EQ(sound->getState(), 0);
    EXPECT_NE(music->getCheckBoxSkin()->getCheckImage(), nullptr) << "the check follows the state";
    EXPECT_EQ(takeLog(), "music=1;sound=0;");

    click(normal);
    click(normal);
    click(hard);
    EXPECT_EQ(easy->getState(), 0);
    EXPECT_EQ(normal->getState(), 0);
    EXPECT_EQ(hard->getState(), 1);
    EXPECT_EQ(takeLog(), "choice normal;choice hard;") << "a click on the selected choice is silent";

    // OK by mouse, then by Return on the focused button.
    click(ok);
    EXPECT_EQ(find<gui::Widget>(L"message")->getText(), L"Saved");
    keyDown(gui::KeyReturn);
    keyUp(gui::KeyReturn);
    EXPECT_EQ(takeLog(), "ok;ok;");
    EXPECT_TRUE(window->getVisible(false));

    click(cancel);
    EXPECT_EQ(takeLog(), "cancel;closed;");
    EXPECT_FALSE(window->getVisible(false));
    gui::Widget::destroy(window);
}

TEST_F(DialogTest, TheCloseButtonClosesTheWindowAndAKillWaitsForTheQueue) {
    gui::CloseButton* close = window->getHeader()->getCloseButton();
    ASSERT_NE(close, nullptr);
    auto changes = countChanges(close);

    click(close);
    EXPECT_EQ(*changes, 1);
    EXPECT_EQ(takeLog(), "closed;");
    EXPECT_FALSE(window->getVisible(false));

    // Shown again, with a close callback that kills the window: it survives
    // the click that closed it and dies in the next frame.
    window->setVisible(true);
    frame();
    window->addWidgetCallback(gui::getWidgetCallbackType(gui::WindowBase::closeCallbackName),
                              std::make_shared<std::function<void()>>([this] { window->kill(); }));
    gui::WidgetHandler* handle = window->handler();
    gui::WidgetHandler* buttonHandle = close->handler();
    moveTo(close);
    press();
    EXPECT_EQ(close->getInteractiveState(), gui::skin::Pressed);
    gui().mouseUp(gui::MouseButtonLeft);
    gui().processMessages();
    EXPECT_EQ(takeLog(), "closed;");
    EXPECT_NE(gui::WidgetHandler::get(handle), nullptr);
    EXPECT_FALSE(window->getVisible(false));
    frame();
    EXPECT_EQ(gui::WidgetHandler::get(handle), nullptr);
    EXPECT_EQ(gui::WidgetHandler::get(buttonHandle), nullptr);
}
