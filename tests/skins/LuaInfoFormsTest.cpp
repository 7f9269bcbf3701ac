#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "KeyboardButtons.h"
#include "LogCapture.h"
#include "Skin/LuaUtil.h"
#include "Skin/StateInfo.h"

namespace {

class LuaInfoFormsTest : public ::testing::Test {
protected:
    void SetUp() override { L = luaL_newstate(); }
    void TearDown() override { lua_close(L); }

    void push(std::string const& chunk) {
        ASSERT_EQ(luaL_loadstring(L, chunk.c_str()), 0) << chunk;
        ASSERT_EQ(lua_pcall(L, 0, 1, 0), 0) << chunk;
    }

    // Writes `value`, reads it back into a fresh object, and checks the stack.
    template <class T>
    T roundTrip(T const& value) {
        int const top = lua_gettop(L);
        luautil::setValue(L, value);
        T back;
        EXPECT_TRUE(luautil::getValue(L, -1, back));
        EXPECT_EQ(lua_gettop(L), top + 1);
        lua_settop(L, top);
        return back;
    }

    lua_State* L = nullptr;
};

}  // namespace

TEST_F(LuaInfoFormsTest, BkgInfoResetsFirstAndRoundTrips) {
    gui::Bkg::Info info;
    info.file = "old";
    info.insets = gui::Insets(9, 9, 9, 9);
    info.colors[0] = osg::Vec4f(1, 1, 1, 1);
    push("return {}");
    EXPECT_TRUE(luautil::getValue(L, -1, info));
    EXPECT_TRUE(info.file.empty());
    EXPECT_TRUE(info.rect.isInverted()) << "the unset rectangle: all of the picture";
    EXPECT_EQ(info.insets, gui::Insets());
    ASSERT_EQ(info.colors.size(), 9u);
    for (osg::Vec4f const& c : info.colors)
        EXPECT_EQ(c, osg::Vec4f(0, 0, 0, 0));

    push(R"(return { file = 'frame', rect = { x1 = 1, y1 = 2, x2 = 7, y2 = 8 },
        insets = { left = 2, top = 3, right = 4, bottom = 5 },
        left_top = '0xff000080', center_center = 'ffffffff', right_bottom = 17 })");
    luautil::getValue(L, -1, info);
    EXPECT_EQ(info.file, "frame");
    EXPECT_EQ(info.rect, osg::Recti(1, 2, 7, 8));
    EXPECT_EQ(info.colors[gui::Bkg::LeftTop], osg::Vec4f(1, 0, 0, 128 / 255.0f));
    EXPECT_EQ(info.colors[gui::Bkg::CenterCenter], osg::Vec4f(1, 1, 1, 1));
    EXPECT_EQ(info.colors[gui::Bkg::RightBottom], osg::Vec4f(0, 0, 0, 0)) << "a number is no colour";

    gui::Bkg::Info const back = roundTrip(info);
    EXPECT_EQ(back.file, info.file);
    EXPECT_EQ(back.rect, info.rect);
    EXPECT_EQ(back.insets, info.insets);
    EXPECT_EQ(back.colors, info.colors);
    EXPECT_TRUE(roundTrip(gui::Bkg::Info()).rect.isInverted()) << "an unset rectangle stays unset";

    push("return 'frame'");
    EXPECT_FALSE(luautil::getValue(L, -1, info));
    EXPECT_EQ(info.file, "frame") << "a non-table changes nothing";
}

TEST_F(LuaInfoFormsTest, ImageInfoRoundTripsEveryKey) {
    gui::Image::Info info;
    push(R"(return { file = 'icon', color = '0x00ff0080', size = { horz = 16, vert = 8 },
        rect = { x1 = 0, y1 = 0, x2 = 16, y2 = 8 }, userTexSampler = 2, resizeToFill = true,
        tileHorizontally = true, tileVertically = false,
        horzAlign = { type = 'right', offset = -2 }, vertAlign = { type = 'stretch' } })");
    EXPECT_TRUE(luautil::getValue(L, -1, info));
    EXPECT_EQ(info.file, "icon");
    EXPECT_EQ(info.color, osg::Vec4f(0, 1, 0, 128 / 255.0f));
    EXPECT_EQ(info.size, osg::Vec2i(16, 8));
    EXPECT_EQ(info.userTexSampler, 2);
    EXPECT_TRUE(info.resizeToFill);
    EXPECT_TRUE(info.tileHorizontally);
    EXPECT_EQ(info.horzAlign, gui::Align(gui::Align::Max, -2));
    EXPECT_EQ(info.vertAlign, gui::Align(gui::Align::Stretch, 0));

    gui::Image::Info back = roundTrip(info);
    EXPECT_EQ(back.file, info.file);
    EXPECT_EQ(back.color, info.color);
    EXPECT_EQ(back.size, info.size);
    EXPECT_EQ(back.rect, info.rect);
    EXPECT_EQ(back.userTexSampler, info.userTexSampler);
    EXPECT_EQ(back.resizeToFill, info.resizeToFill);
    EXPECT_EQ(back.tileHorizontally, info.tileHorizontally);
    EXPECT_EQ(back.tileVertically, info.tileVertically);
    EXPECT_EQ(back.horzAlign, info.horzAlign);
    EXPECT_EQ(back.vertAlign, info.vertAlign);

    // A transparent picture stays transparent, not the default white.
    info.color = osg::Vec4f(0, 0, 0, 0);
    EXPECT_EQ(roundTrip(info).color, osg::Vec4f(0, 0, 0, 0));

    // Reset first: absent keys and unknown align names give the defaults, not the old values.
    push("return { horzAlign = { type = 'Right', offset = 5 }, color = 3 }");
    luautil::getValue(L, -1, info);
    EXPECT_TRUE(info.file.empty());
    EXPECT_EQ(info.horzAlign, gui::Image::Info().horzAlign);
    EXPECT_EQ(info.color, osg::Vec4f(1, 1, 1, 1));
    EXPECT_FALSE(info.resizeToFill);
}

TEST_F(LuaInfoFormsTest, TextInfoRoundTripsAndValidatesBlur) {
    gui::Text::Info info;
    info.font = "fixed";
    info.fontSize = 16;
    info.lineHeight = 20;
    info.lineThroughHeight = 2;
    info.lineThroughOffset = 3;
    info.blur = rastFont::Blur2;
    info.color = osg::Vec4f(0, 0, 0, 0);
    info.bkgColor = osg::Vec4f(1, 1, 1, 1);
    info.shadowColor = osg::Vec4f(0, 0, 0, 64 / 255.0f);
    info.blurColor = osg::Vec4f(1, 0, 0, 1);
    info.lineThroughColor = osg::Vec4f(0, 0, 1, 1);
    info.shadowOffset = osg::Vec2i(1, -1);
    info.horzAlign = gui::Align(gui::Align::Center, 3);
    info.vertAlign = gui::Align(gui::Align::Max, -4);
    EXPECT_EQ(roundTrip(info), info);

    vurel_test::LogCapture log;
    push("return { font = 'f', blur = 5, fontSize = 'big' }");
    luautil::getValue(L, -1, info);
    EXPECT_EQ(info.blur, rastFont::BlurNone);
    EXPECT_EQ(info.fontSize, 0) << "reset first; a string is no size";
    EXPECT_EQ(info.color, osg::Vec4f(0, 0, 0, 1));
    EXPECT_TRUE(log.contains("VUREL", 16, "Invalid blur type!"));

    log.clear();
    push("return { blur = 1 }");
    luautil::getValue(L, -1, info);
    EXPECT_EQ(info.blur, rastFont::Blur1);
    push("return { blur = 'soft' }");
    luautil::getValue(L, -1, info);
    EXPECT_EQ(info.blur, rastFont::BlurNone);
    EXPECT_TRUE(log.lines().empty()) << "only a number out of range is logged";
}

TEST_F(LuaInfoFormsTest, StateInfoFormsOwnershipAndNil) {
    gui::skin::StateInfo empty;
    luautil::setValue(L, empty);
    EXPECT_TRUE(lua_isnil(L, -1)) << "an entry without parts is nil";
    gui::skin::StateInfo* out = nullptr;
    EXPECT_FALSE(luautil::getValue(L, -1, out));
    EXPECT_EQ(out, nullptr);
    lua_settop(L, 0);

    push(R"(return { bkg = { center_center = '0x808080ff' }, picture = 'icon', text = { font = 'f', fontSize = 3 } })");
    ASSERT_TRUE(luautil::getValue(L, -1, out));
    std::unique_ptr<gui::skin::StateInfo> owned(out);
    EXPECT_TRUE(owned->hasBkg);
    EXPECT_FALSE(owned->hasPicture) << "a part of the wrong type is absent";
    EXPECT_TRUE(owned->hasText);
    EXPECT_EQ(lua_gettop(L), 1);

    luautil::setValue(L, *owned);
    std::shared_ptr<gui::skin::StateInfo> shared;
    ASSERT_TRUE(luautil::getValue(L, -1, shared));
    EXPECT_TRUE(shared->hasBkg);
    EXPECT_FALSE(shared->hasPicture);
    EXPECT_EQ(shared->bkg.colors, owned->bkg.colors);
    EXPECT_EQ(shared->text, owned->text);
}

TEST_F(LuaInfoFormsTest, HotKeyByKeyName) {
    gui::registerKeyboardButtonsNames();  // an application does it at start
    gui::WindowBase::HotKey key;
    key.button = gui::getKeyboardButtonByName("f1");
    key.ctrlPressed = true;
    key.shiftPressed = true;
    ASSERT_NE(key.button, gui::KeyboardButton(0));
    EXPECT_EQ(roundTrip(key), key);

    push("return { altPressed = true }");
    gui::WindowBase::HotKey other = key;
    EXPECT_TRUE(luautil::getValue(L, -1, other));
    EXPECT_TRUE(other.altPressed);
    EXPECT_TRUE(other.ctrlPressed) << "absent booleans keep their values";
    EXPECT_EQ(other.button, gui::getKeyboardButtonByName("")) << "an absent button reads as the empty name";
}
