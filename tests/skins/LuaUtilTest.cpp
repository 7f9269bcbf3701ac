#include <gtest/gtest.h>

#include <string>

#include "LogCapture.h"
#include "Skin/LuaUtil.h"

namespace {

// A Lua state with a table built from a chunk, e.g. "return { horz = 1 }".
class LuaUtilTest : public ::testing::Test {
protected:
    void SetUp() override { L = luaL_newstate(); }
    void TearDown() override { lua_close(L); }

    // Pushes the value the chunk returns.
    void push(std::string const& chunk) {
        ASSERT_EQ(luaL_loadstring(L, chunk.c_str()), 0) << chunk;
        ASSERT_EQ(lua_pcall(L, 0, 1, 0), 0) << chunk;
    }

    std::string topString() const { return lua_isstring(L, -1) ? lua_tostring(L, -1) : "<not a string>"; }

    lua_State* L = nullptr;
};

}  // namespace

TEST_F(LuaUtilTest, ColourStringsBothWays) {
    osg::Vec4f c;
    push("return '0xFF000080'");
    EXPECT_TRUE(luautil::getColor(L, -1, c));
    EXPECT_FLOAT_EQ(c.x, 1.0f);
    EXPECT_FLOAT_EQ(c.w, 128.0f / 255.0f);
    push("return 'FF000080'");
    osg::Vec4f d;
    luautil::getColor(L, -1, d);
    EXPECT_EQ(c, d) << "the prefix is optional";
    push("return 'zzz'");
    luautil::getColor(L, -1, d);
    EXPECT_EQ(d, osg::Vec4f(0, 0, 0, 0));
    push("return 12");
    d = osg::Vec4f(1, 1, 1, 1);
    EXPECT_FALSE(luautil::getColor(L, -1, d));
    EXPECT_EQ(d, osg::Vec4f(0, 0, 0, 0));
    lua_settop(L, 0);

    luautil::setColor(L, osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(topString(), "0xff0000ff");
    luautil::setColor(L, osg::Vec4f(2, -1, 0, 0.5f));
    EXPECT_EQ(topString(), "0xff00007f");
    luautil::setColor(L, osg::Vec4f(0, 0, 0, 0));
    EXPECT_TRUE(lua_isnil(L, -1));
    luautil::getColor(L, -1, d);
    EXPECT_EQ(d, osg::Vec4f(0, 0, 0, 0)) << "nil reads back as transparent black";
}

TEST_F(LuaUtilTest, TableFormsRoundTripAndLeaveTheStackAlone) {
    osg::Vec2i v{7, 7};
    push("return { horz = 3 }");
    int const top = lua_gettop(L);
    EXPECT_TRUE(luautil::getValue(L, -1, v));
    EXPECT_EQ(v, osg::Vec2i(3, 7)) << "an absent field keeps its value";
    EXPECT_EQ(lua_gettop(L), top);

    osg::Recti r{1, 1, 1, 1};
    push("return { x2 = 5, y2 = 6 }");
    luautil::getValue(L, -1, r);
    EXPECT_EQ(r, osg::Recti(0, 0, 5, 6)) << "a rectangle is reset first";
    luautil::setValue(L, osg::Recti());
    luautil::getValue(L, -1, r);
    EXPECT_EQ(r, osg::Recti(0, 0, 0, 0)) << "an inverted rectangle is written as zeros";

    gui::Insets in{1, 2, 3, 4};
    luautil::setValue(L, in);
    gui::Insets back;
    luautil::getValue(L, -1, back);
    EXPECT_EQ(back, in);

    osg::Vec4f f{0.25f, 0.5f, 0.75f, 1.0f};
    luautil::setValue(L, f);
    osg::Vec4f fb;
    luautil::getValue(L, -1, fb);
    EXPECT_EQ(fb, f);

    std::wstring const wide = L"Gr\u00fc\u00dfe \u263A";
    luautil::setValue(L, orm::basic_string<wchar_t>(wide));
    orm::basic_string<wchar_t> wb;
    luautil::getValue(L, -1, wb);
    EXPECT_EQ(wb, wide);

    // Wrong types answer false and change nothing.
    int i = 9;
    push("return 'text'");
    EXPECT_FALSE(luautil::getValue(L, -1, i));
    EXPECT_FALSE(luautil::getValue(L, -1, v));
    EXPECT_EQ(i, 9);
    bool b = true;
    EXPECT_FALSE(luautil::getValue(L, -1, b));
    EXPECT_FALSE(luautil::getField(L, -1, "horz", i)) << "a field of a non-table";
}

TEST_F(LuaUtilTest, AlignNamesAndCanonicalForms) {
    gui::Align a(gui::Align::Type(0), 4);
    push("return { type = 'bottom', offset = -3 }");
    EXPECT_TRUE(luautil::getValue(L, -1, a));
    EXPECT_EQ(static_cast<int>(a.getType()), 2);
    EXPECT_EQ(a.getOffset(), -3);
    luautil::setValue(L, a);
    orm::basic_string<char> type;
    luautil::getField(L, -1, "type", type);
    EXPECT_EQ(type, "max");

    // Unknown or absent type: nothing changes, the offset neither.
    push("return { type = 'Left', offset = 99 }");
    EXPECT_TRUE(luautil::getValue(L, -1, a));
    EXPECT_EQ(static_cast<int>(a.getType()), 2);
    EXPECT_EQ(a.getOffset(), -3);
    push("return { offset = 99 }");
    luautil::getValue(L, -1, a);
    EXPECT_EQ(a.getOffset(), -3);

    vurel_test::LogCapture log;
    luautil::setValue(L, gui::Align(gui::Align::Type(7), 1));
    EXPECT_TRUE(log.contains("VUREL", 16, "Invalid align type!"));
    luautil::getField(L, -1, "type", type);
    EXPECT_EQ(type, "");
}
