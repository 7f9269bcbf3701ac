#include <gtest/gtest.h>

#include "GuiFixture.h"
#include "Skin/SkinData.h"
#include "Skin/WindowSkins.h"
#include "Window.h"
#include "WindowHeader.h"
#include "WindowView.h"
#include "orm/Lua.h"

namespace {

class WindowSkinTest : public vurel_test::GuiFixture {
protected:
    void SetUp() override {
        skinFile = "test_skin.lua";
        GuiFixture::SetUp();
    }
};

}  // namespace

TEST_F(WindowSkinTest, AWindowLoadsItsHeaderAndViewSubSkins) {
    auto* window = new gui::Window();
    window->setSize({200, 100});
    frame();
    auto* skin = dynamic_cast<gui::skin::WindowBaseSkin*>(window->getWidgetSkin());
    ASSERT_NE(skin, nullptr);
    EXPECT_EQ(window->getMinSize(), osg::Vec2i(60, 40)) << "params of the window's own skin";
    ASSERT_NE(skin->getHeaderSkin(), nullptr);
    EXPECT_EQ(skin->getHeaderSkin()->getData()->getInsets().left, 4) << "the header sub-skin";
    EXPECT_EQ(skin->getViewSkin()->getData()->getInsets().top, 2) << "the view sub-skin";

    // The header height places the view; a change in the data moves it.
    auto* data = dynamic_cast<gui::skin::WindowData*>(skin->getData());
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(window->getView()->getPosition().y, 20);
    data->setHeaderHeight(30);
    frame();
    EXPECT_EQ(window->getHeader()->getSize().y, 30);
    EXPECT_EQ(window->getView()->getPosition().y, 30);
    EXPECT_EQ(window->getView()->getSize().y, 70);
    gui::Widget::destroy(window);
}

TEST_F(WindowSkinTest, WindowParamsWriteBackAndReadAgain) {
    auto* window = new gui::Window();
    auto* data = dynamic_cast<gui::skin::WindowData*>(window->getWidgetSkin()->getData());
    ASSERT_NE(data, nullptr);
    data->setHeaderHeight(26);
    lua_State* L = gui().getSkinLuaState();
    int const top = lua_gettop(L);
    lua_newtable(L);
    window->getWidgetSkin()->putIntoScript(L);

    auto* other = new gui::Window();
    other->getWidgetSkin()->loadFromScript(L);
    lua_settop(L, top);
    auto* otherData = dynamic_cast<gui::skin::WindowData*>(other->getWidgetSkin()->getData());
    EXPECT_EQ(otherData->getHeaderHeight(), 26);
    auto* otherSkin = dynamic_cast<gui::skin::WindowBaseSkin*>(other->getWidgetSkin());
    EXPECT_EQ(otherSkin->getHeaderSkin()->getData()->getInsets().left, 4);
    gui::Widget::destroy(window);
    gui::Widget::destroy(other);
}
