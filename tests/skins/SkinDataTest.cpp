#include <gtest/gtest.h>

#include <string>

#include "Skin/LuaUtil.h"
#include "Skin/SkinData.h"

using gui::skin::Data;
using gui::skin::Disabled;
using gui::skin::Hover;
using gui::skin::Pressed;
using gui::skin::Released;

namespace {

// A Lua state and a Data without owner, loaded from chunks that return a skin data table.
class SkinDataTest : public ::testing::Test {
protected:
    void SetUp() override { L = luaL_newstate(); }
    void TearDown() override { lua_close(L); }

    void push(std::string const& chunk) {
        ASSERT_EQ(luaL_loadstring(L, chunk.c_str()), 0) << chunk;
        ASSERT_EQ(lua_pcall(L, 0, 1, 0), 0) << chunk;
    }

    // Loads params and states of the returned table into `data`, checking that the stack is left alone.
    void load(Data& data, std::string const& chunk) {
        push(chunk);
        int const top = lua_gettop(L);
        data.loadParams(L);
        data.loadStates(L);
        EXPECT_EQ(lua_gettop(L), top) << chunk;
        lua_settop(L, 0);
    }

    static osg::Vec4f centre(gui::Bkg::Info const* info) { return info ? info->colors[4] : osg::Vec4f(-1, -1, -1, -1); }

    lua_State* L = nullptr;
};

osg::Vec4f const kGrey(0x80 / 255.0f, 0x80 / 255.0f, 0x80 / 255.0f, 1.0f);
osg::Vec4f const kRed(1, 0, 0, 1);

}  // namespace

TEST_F(SkinDataTest, LookupFallsBackToInnerOneThenToReleased) {
    Data data(nullptr);
    load(data, R"(return { states = {
        released = {
            [1] = { bkg = { center_center = '0x808080ff' }, text = { font = 'f', fontSize = 9 } },
            [5] = { picture = { file = 'five' } },
        },
        hover = { [1] = { text = { font = 'hover', fontSize = 9, color = '0xff0000ff' } } },
    } })");

    // A state with no table at all reads released; an unknown inner state reads inner 1.
    EXPECT_EQ(centre(data.getBkg(Disabled, 7)), kGrey);
    EXPECT_EQ(data.getBkg(Disabled, 7), data.getBkg(Released, 1));

    // Hover defines only its text; its background is that of released.
    ASSERT_NE(data.getText(Hover, 1), nullptr);
    EXPECT_EQ(data.getText(Hover, 1)->font, "hover");
    EXPECT_EQ(data.getText(Hover, 1)->color, kRed);
    EXPECT_EQ(data.getBkg(Hover, 1), data.getBkg(Released, 1));
    EXPECT_EQ(data.getText(Released, 1)->font, "f");

    // (hover, 5): the round through hover stops at (hover, 1), the round
    // through released at (released, 5), and neither has a background.
    EXPECT_EQ(data.getBkg(Hover, 5), nullptr);
    EXPECT_EQ(data.getText(Hover, 5)->font, "hover");
    ASSERT_NE(data.getImage(Hover, 5), nullptr);
    EXPECT_EQ(data.getImage(Hover, 5)->file, "five");
    EXPECT_EQ(data.getImage(Released, 1), nullptr);

    // Writing: a null part on a missing entry creates nothing.
    data.setBkg(nullptr, Pressed, 4);
    EXPECT_EQ(data.getStates().count(Pressed), 0u);
    gui::Bkg::Info blue;
    blue.colors[4] = osg::Vec4f(0, 0, 1, 1);
    data.setBkg(&blue, Hover, 1);
    EXPECT_EQ(centre(data.getBkg(Hover, 1)), osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(data.getText(Hover, 1)->font, "hover") << "the other parts of the entry stay";

    // Clearing keeps the entry (and its text), and the background falls back again.
    data.setBkg(nullptr, Hover, 1);
    EXPECT_EQ(data.getStates().at(Hover).count(1), 1u);
    EXPECT_EQ(centre(data.getBkg(Hover, 1)), kGrey);
    EXPECT_EQ(data.getText(Hover, 1)->font, "hover");

    // A new entry holds only the part written.
    data.setText(data.getText(Hover, 1), Pressed, 2);
    EXPECT_EQ(data.getText(Pressed, 2)->font, "hover");
    EXPECT_EQ(centre(data.getBkg(Pressed, 2)), kGrey) << "no own background: released 1 through the fallback";

    Data empty(nullptr);
    EXPECT_EQ(empty.getBkg(Released, 1), nullptr);
    EXPECT_EQ(empty.getText(Disabled, 3), nullptr);
}

TEST_F(SkinDataTest, ParamsKeepOldValuesForAbsentOrWrongKeys) {
    Data data(nullptr);
    EXPECT_EQ(data.getFocusRectInsets(), gui::Insets(2, 2, 2, 2));
    load(data, R"(return { params = {
        minSize = { horz = -5, vert = 10 }, maxSize = { horz = 300, vert = 0 },
        insets = { left = 1, top = 2, right = 3, bottom = 4 }, textWrapping = true,
        textLineHeight = 18, focusRectColor = '0x00ff00ff', clipInsets = { left = 5 } } })");
    EXPECT_EQ(data.getMinSize(), osg::Vec2i(0, 10));
    EXPECT_EQ(data.getMaxSize(), osg::Vec2i(300, 0));
    EXPECT_EQ(data.getInsets(), gui::Insets(1, 2, 3, 4));
    EXPECT_TRUE(data.getTextWrapping());
    EXPECT_FALSE(data.getUseEllipsis());
    EXPECT_EQ(data.getTextLineHeight(), 18);
    EXPECT_EQ(data.getFocusRectColor(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(data.getFocusRectInsets(), gui::Insets(2, 2, 2, 2));
    EXPECT_FALSE(data.getClipInsetsEmpty());

    // Wrong types at every key are treated as absent.
    load(data, R"(return { params = {
        minSize = 7, insets = 'wide', textWrapping = 1, textLineHeight = 'x',
        focusRectColor = 12, clipInsets = true } })");
    EXPECT_EQ(data.getMinSize(), osg::Vec2i(0, 10));
    EXPECT_EQ(data.getInsets(), gui::Insets(1, 2, 3, 4));
    EXPECT_TRUE(data.getTextWrapping());
    EXPECT_EQ(data.getTextLineHeight(), 18);
    EXPECT_EQ(data.getFocusRectColor(), osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(data.getClipInsets(), gui::Insets(5, 0, 0, 0));

    load(data, "return { params = 'none', states = 42 }");
    EXPECT_EQ(data.getInsets(), gui::Insets(1, 2, 3, 4));
    EXPECT_TRUE(data.getStates().empty());
}

TEST_F(SkinDataTest, MalformedStatesLoadWhatIsValid) {
    Data data(nullptr);
    load(data, R"(return { states = {
        released = { [1] = { bkg = { center_center = '0x808080ff' } }, ['2'] = { text = { font = 'x' } },
                     inner = { bkg = {} }, [3] = 'not a table', [4] = { bkg = 5, picture = { file = 'p' } } },
        hovered = { [1] = { bkg = {} } },
        pressed = 'no',
        [1] = { [1] = { bkg = {} } },
    } })");
    ASSERT_EQ(data.getStates().size(), 1u) << "only released; unknown names, numbers and non-tables are skipped";
    auto const& released = data.getStates().at(Released);
    EXPECT_EQ(released.count(1), 1u);
    EXPECT_EQ(released.count(2), 0u) << "string inner keys are skipped";
    EXPECT_EQ(released.count(3), 0u);
    ASSERT_EQ(released.count(4), 1u);
    EXPECT_FALSE(released.at(4)->hasBkg) << "a part of the wrong type is absent";
    EXPECT_TRUE(released.at(4)->hasPicture);
    EXPECT_EQ(data.getBkg(Released, 4), nullptr) << "an entry ends the search even without the part";
}

TEST_F(SkinDataTest, CopyToResolvesLooksAndIsIndependent) {
    Data source(nullptr);
    load(source, R"(return { params = { insets = { left = 6 }, useEllipsis = true },
        states = { released = { [1] = { bkg = { center_center = '0x808080ff' } } },
                   hover = { [1] = { text = { font = 'h', fontSize = 3 } } } } })");
    Data target(nullptr);
    source.copyTo(&target);
    EXPECT_TRUE(target.getLoaded());
    EXPECT_EQ(target.getInsets().left, 6);
    EXPECT_TRUE(target.getUseEllipsis());
    // The hover entry of the copy holds the background it resolved to as its own.
    ASSERT_TRUE(target.getStates().at(Hover).at(1)->hasBkg);
    EXPECT_EQ(centre(target.getBkg(Hover, 1)), kGrey);

    gui::Bkg::Info red;
    red.colors[4] = kRed;
    source.setBkg(&red, Released, 1);
    source.setInsets(gui::Insets(9, 9, 9, 9));
    EXPECT_EQ(centre(target.getBkg(Released, 1)), kGrey);
    EXPECT_EQ(centre(target.getBkg(Hover, 1)), kGrey);
    EXPECT_EQ(target.getInsets().left, 6);
}

TEST_F(SkinDataTest, UnloadedTablesLoadBackToTheSameData) {
    Data source(nullptr);
    load(source, R"(return { params = { minSize = { horz = 4, vert = 5 }, clipInsets = { top = 2 } },
        states = { released = { [1] = { bkg = { file = 'f', center_center = '0x102030ff' } } },
                   disabled = { [2] = { text = { font = 'd', fontSize = 7 } } } } })");
    lua_newtable(L);
    source.unloadParams(L);
    source.unloadStates(L);
    ASSERT_EQ(lua_gettop(L), 1);

    lua_getfield(L, -1, "params");
    lua_getfield(L, -1, "focusRectColor");
    EXPECT_TRUE(lua_isnil(L, -1)) << "transparent black is written as nil";
    lua_settop(L, 1);

    Data back(nullptr);
    back.loadParams(L);
    back.loadStates(L);
    EXPECT_EQ(back.getMinSize(), osg::Vec2i(4, 5));
    EXPECT_EQ(back.getClipInsets(), gui::Insets(0, 2, 0, 0));
    EXPECT_EQ(back.getFocusRectInsets(), gui::Insets(2, 2, 2, 2));
    ASSERT_NE(back.getBkg(Released, 1), nullptr);
    EXPECT_EQ(back.getBkg(Released, 1)->file, "f");
    EXPECT_EQ(back.getBkg(Released, 1)->colors, source.getBkg(Released, 1)->colors);
    ASSERT_NE(back.getText(Disabled, 2), nullptr);
    EXPECT_EQ(*back.getText(Disabled, 2), *source.getText(Disabled, 2));
    EXPECT_EQ(back.getText(Disabled, 1), nullptr);
}
