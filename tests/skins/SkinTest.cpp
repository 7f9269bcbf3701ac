#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "SkinFixture.h"
#include "LogCapture.h"
#include "Panel.h"
#include "Skin/Bkg.h"
#include "Skin/GraphicCommands.h"
#include "Skin/LuaUtil.h"
#include "Skin/ShaderEffect.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "Skin/Text.h"
#include "rast/FrameBuffer.h"
#include "rast/Texture.h"

using gui::skin::Released;

namespace {

class SkinTest : public vurel_test::SkinFixture {
protected:
    lua_State* lua() { return gui().getSkinLuaState(); }

    void run(std::string const& chunk) {
        ASSERT_EQ(luaL_dostring(lua(), chunk.c_str()), 0) << chunk;
    }

    static size_t indexOf(std::vector<std::string> const& events, std::string const& prefix, size_t from = 0) {
        for (size_t i = from; i < events.size(); ++i)
            if (events[i].rfind(prefix, 0) == 0)
                return i;
        return events.size();
    }

    static std::string texPrefix(rastTexture const* texture) {
        return "drawQuads tex=" + std::to_string(texture ? texture->getId() : 0) + " ";
    }
};

// A panel whose pointer and inner state the test sets.
class StatefulPanel : public gui::Panel {
public:
    int getInteractiveState() const override { return state; }
    int getInnerState() const override { return inner; }

    void show(int interactive, int innerState) {
        state = interactive;
        inner = innerState;
        setDirty(DirtySelf);
    }

    int state = 0;
    int inner = 1;
};

// A skin with the two kinds of sub-skin: plain data, and a skin of its own.
class WindowLikeSkin : public gui::skin::Skin {
public:
    WindowLikeSkin() : Skin(nullptr, true), header(nullptr), view(nullptr, true) {}

    gui::skin::Data header;
    gui::skin::Skin view;
    bool subSkinsRead = false;

protected:
    void loadSubSkins_(lua_State* L) override {
        subSkinsRead = true;
        loadSubSkin_(L, "header", header);
        loadSubSkin_(L, "view", &view);
    }
    void unloadSubSkins_(lua_State* L) const override {
        unloadSubSkin_(L, "header", header);
        unloadSubSkin_(L, "view", &view);
    }
};

// Stands in for an effect kind: records what the skin asks of it.
class RecordingEffect : public gui::skin::ShaderEffect {
public:
    void destroy() override { ++destroyed; }
    void setTexture(rastTexture* t) override { texture = t; }
    void doRedraw(osg::Vec2i const& size) override { redrawSize = size; }
    void draw() override { ++draws; }
    void make(gui::GraphicCommands*) override { ++makes; }

    int destroyed = 0;
    int draws = 0;
    int makes = 0;
    rastTexture* texture = nullptr;
    osg::Vec2i redrawSize;
};

// The draw pass of a recording, as an application replays it; target
// rendering (the doRedraw pass) is left out of the answer.
std::vector<std::string> replayDrawPass(rastRecordingBackend& backend, gui::GraphicCommands& commands) {
    for (gui::GraphicCommand* c : commands.getCommands())
        c->doRedraw();
    backend.clearEvents();
    for (gui::GraphicCommand* c : commands.getCommands())
        c->draw();
    std::vector<std::string> events = backend.getEvents();
    for (auto it = commands.getCommands().rbegin(); it != commands.getCommands().rend(); ++it)
        (*it)->release();
    commands.clear();
    return events;
}

}  // namespace

TEST_F(SkinTest, LoadSkinByNameFromTheScript) {
    auto* panel = new gui::Panel();
    gui::skin::Data const* data = panel->getWidgetSkin()->getData();
    EXPECT_TRUE(data->getLoaded());
    EXPECT_EQ(data->getMinSize(), osg::Vec2i(10, 10));
    EXPECT_EQ(data->getInsets(), gui::Insets(4, 3, 4, 3));
    EXPECT_EQ(data->getStates().size(), 4u);

    vurel_test::LogCapture log;
    int const top = lua_gettop(lua());
    gui::skin::Skin skin(nullptr, true);
    gui().loadSkin("noSuchSkin", skin);
    run("Skin.number = function() return 42 end");
    run("Skin.notAFunction = { skinData = { params = { insets = { left = 1 } } } }");
    gui().loadSkin("number", skin);
    gui().loadSkin("notAFunction", skin);
    EXPECT_FALSE(skin.getData()->getLoaded());
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(lua_gettop(lua()), top);

    run("Skin.failing = function() error('boom') end");
    gui().loadSkin("failing", skin);
    EXPECT_TRUE(log.contains("VUREL", 64, "Skin loading failed! Error: "));
    EXPECT_TRUE(log.containsText("boom"));
    EXPECT_FALSE(skin.getData()->getLoaded());
    EXPECT_EQ(lua_gettop(lua()), top);

    // Skin::load goes the same way.
    skin.load("panelSkin");
    EXPECT_TRUE(skin.getData()->getLoaded());
    EXPECT_EQ(skin.getData()->getInsets(), gui::Insets(4, 3, 4, 3));
    EXPECT_EQ(lua_gettop(lua()), top);
}

TEST_F(SkinTest, SubSkinsLoadAndWriteBack) {
    WindowLikeSkin skin;
    gui().loadSkin("windowSkin", skin);
    EXPECT_TRUE(skin.subSkinsRead);
    EXPECT_EQ(skin.getData()->getMinSize(), osg::Vec2i(60, 40));
    EXPECT_EQ(skin.header.getInsets(), gui::Insets(4, 0, 4, 0));
    EXPECT_NE(skin.header.getText(Released, 1), nullptr);
    EXPECT_EQ(skin.view.getData()->getInsets(), gui::Insets(2, 2, 2, 2));

    lua_State* L = lua();
    int const top = lua_gettop(L);
    lua_newtable(L);
    skin.putIntoScript(L);
    WindowLikeSkin copy;
    copy.loadFromScript(L);
    lua_settop(L, top);
    EXPECT_EQ(copy.getData()->getMinSize(), osg::Vec2i(60, 40));
    EXPECT_EQ(copy.header.getInsets(), gui::Insets(4, 0, 4, 0));
    ASSERT_NE(copy.header.getText(Released, 1), nullptr);
    EXPECT_EQ(*copy.header.getText(Released, 1), *skin.header.getText(Released, 1));
    EXPECT_EQ(copy.view.getData()->getInsets(), gui::Insets(2, 2, 2, 2));
}

TEST_F(SkinTest, MalformedSkinTablesLoadWhatIsValid) {
    lua_State* L = lua();
    struct Case {
        char const* chunk;
        bool loaded;
        bool subSkins;
    };
    Case const cases[] = {
        {"return 5", false, false},
        {"return { skinData = 5, skins = { header = { skinData = {} } } }", false, false},
        {"return { skins = { header = { skinData = { params = { insets = { left = 9 } } } } } }", false, false},
        {"return { skinData = { params = 'p', states = 's' }, skins = 7 }", true, false},
        {"return { skinData = {}, skins = { header = 3, view = { skinData = 'x' } } }", true, true},
        {"return { skinData = { states = { released = { [1] = 'x', [2] = { bkg = 'y', text = {} } } } },"
         "         skins = { header = { skinData = { params = { insets = { left = 'a', top = 6 } } } } } }",
         true, true},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.chunk);
        WindowLikeSkin skin;
        ASSERT_EQ(luaL_dostring(L, c.chunk), 0);
        int const top = lua_gettop(L);
        skin.loadFromScript(L);
        EXPECT_EQ(lua_gettop(L), top);
        lua_pop(L, 1);
        EXPECT_EQ(skin.getData()->getLoaded(), c.loaded);
        EXPECT_EQ(skin.subSkinsRead, c.subSkins);
        EXPECT_EQ(skin.getData()->getInsets(), gui::Insets());
        EXPECT_FALSE(skin.view.getData()->getLoaded());
    }
    // What was valid in the last table did arrive.
    WindowLikeSkin skin;
    ASSERT_EQ(luaL_dostring(L, cases[5].chunk), 0);
    skin.loadFromScript(L);
    lua_pop(L, 1);
    EXPECT_EQ(skin.header.getInsets(), gui::Insets(0, 6, 0, 0));
    ASSERT_NE(skin.getData()->getText(Released, 2), nullptr);
    EXPECT_EQ(skin.getData()->getBkg(Released, 2), nullptr);
    EXPECT_EQ(skin.getData()->getStates().at(Released).count(1), 0u);
}

TEST_F(SkinTest, PainterDrawsBackgroundThenClippedPictureTextAndChildren) {
    auto* panel = new gui::Panel();
    panel->setPosition({10, 20});
    panel->setSize({100, 40});
    panel->setText(L"Hi");
    auto* child = new gui::Panel();
    child->setPosition({5, 5});
    child->setSize({20, 10});
    panel->insertWidget(child);
    // The child shows a plain background and no clip insets.
    auto* plain = new gui::skin::Data(child->getWidgetSkin());
    gui::Bkg::Info fill;
    fill.colors.assign(gui::Bkg::CellCount, osg::Vec4f(0, 1, 0, 1));
    plain->setBkg(&fill, Released, 1);
    child->getWidgetSkin()->setSkinData(plain, true);
    update();

    gui::skin::Skin const* skin = panel->getWidgetSkin();
    ASSERT_NE(skin->getBkg(), nullptr);
    ASSERT_NE(skin->getImage(), nullptr);
    ASSERT_NE(skin->getText(), nullptr);
    EXPECT_EQ(skin->getBkg()->getSize(), osg::Vec2i(100, 40));

    backend().clearEvents();
    panel->draw();
    std::vector<std::string> const events = backend().getEvents();
    size_t const bkg = indexOf(events, texPrefix(skin->getBkg()->getTexture()));
    size_t const clip = indexOf(events, "pushClipRect 11 21 109 59");
    size_t const picture = indexOf(events, texPrefix(skin->getImage()->getTexture()));
    size_t const text = indexOf(events, "drawQuads", picture + 1);
    size_t const childMove = indexOf(events, "modelView 15 25");
    size_t const childDraw = indexOf(events, "drawQuads", childMove);
    size_t const unclip = indexOf(events, "popClipRect", childDraw);
    ASSERT_LT(unclip, events.size()) << ::testing::PrintToString(events);
    EXPECT_LT(bkg, clip);
    EXPECT_LT(clip, picture);
    EXPECT_LT(picture, text);
    EXPECT_LT(text, childMove);
    EXPECT_LT(childDraw, unclip);
    EXPECT_EQ(backend().countEvents("pushClipRect"), backend().countEvents("popClipRect"));
    // The panel's own clip, its insets' clip and the child's own: the child's
    // empty clip insets push nothing.
    EXPECT_EQ(backend().countEvents("pushClipRect"), 3u);
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
}

TEST_F(SkinTest, StateChangesPickTheirLook) {
    auto* panel = new StatefulPanel();
    panel->setSize({100, 40});
    panel->setText(L"Hi");
    gui::skin::Skin* skin = panel->getWidgetSkin();
    // Cells without area are not drawn: a background without insets draws its centre alone.
    auto centre = [skin] {
        int const i = skin->getBkg()->getQuads().getCount() == gui::Bkg::CellCount ? 4 : 0;
        float const* c = skin->getBkg()->getColorsToDraw() + 4 * i;
        return osg::Vec4f(c[0], c[1], c[2], c[3]);
    };
    auto byte = [](int b) { return static_cast<float>(b) / 255.0f; };
    update();
    EXPECT_EQ(centre(), osg::Vec4f(byte(0xc0), byte(0xc0), byte(0xc0), 1));
    EXPECT_EQ(skin->getText()->getColor(), osg::Vec4f(0, 0, 0, 1));

    panel->show(gui::skin::Hover, 1);
    update();
    EXPECT_EQ(skin->getText()->getColor(), osg::Vec4f(1, 0, 0, 1)) << "hover's own text";
    EXPECT_EQ(centre(), osg::Vec4f(byte(0xc0), byte(0xc0), byte(0xc0), 1)) << "released's background";
    ASSERT_NE(skin->getImage(), nullptr);

    panel->show(gui::skin::Pressed, 1);
    update();
    EXPECT_EQ(centre(), osg::Vec4f(byte(0x20), byte(0x20), byte(0x20), 1));
    EXPECT_EQ(skin->getText()->getColor(), osg::Vec4f(0, 0, 0, 1));

    // Released inner 2 holds only a background: no fallback for the other parts.
    panel->show(Released, 2);
    update();
    EXPECT_EQ(centre(), osg::Vec4f(byte(0x40), byte(0x80), byte(0xc0), 1));
    EXPECT_EQ(skin->getText(), nullptr);
    EXPECT_EQ(skin->getImage(), nullptr);

    panel->show(gui::skin::Hover, 2);
    update();
    EXPECT_EQ(centre(), osg::Vec4f(byte(0x40), byte(0x80), byte(0xc0), 1));
    ASSERT_NE(skin->getText(), nullptr);
    EXPECT_EQ(skin->getText()->getColor(), osg::Vec4f(1, 0, 0, 1));

    // An invisible background is not made, texture or not; a text without a
    // size is removed.
    panel->show(Released, 1);
    gui::Bkg::Info clear = *skin->getData()->getBkg(Released, 1);
    clear.colors.assign(gui::Bkg::CellCount, osg::Vec4f(1, 1, 1, 0));
    skin->getData()->setBkg(&clear, Released, 1);
    gui::Text::Info noSize = *skin->getData()->getText(Released, 1);
    noSize.fontSize = 0;
    skin->getData()->setText(&noSize, Released, 1);
    update();
    EXPECT_EQ(skin->getBkg(), nullptr);
    EXPECT_EQ(skin->getText(), nullptr);
    EXPECT_NE(skin->getImage(), nullptr);

    panel->setEnabled(false);
    panel->show(3, 1);
    update();
    ASSERT_NE(skin->getBkg(), nullptr);
    EXPECT_EQ(centre(), osg::Vec4f(byte(0x90), byte(0x90), byte(0x90), 1));
    EXPECT_EQ(skin->getText()->getColor(), osg::Vec4f(byte(0x80), byte(0x80), byte(0x80), 1));
}

TEST_F(SkinTest, PreferredSizeAndTextLines) {
    auto* panel = new gui::Panel();
    panel->setText(L"Hi");
    // The text is measured in the widget's own width, and the skin uses an
    // ellipsis: at size 0 it needs what "..." needs.
    EXPECT_EQ(panel->getWidgetSkin()->calcSize(), osg::Vec2i(24 + 8, 16 + 6));
    // Text 2 x 8 by 16; picture 16 x 8 plus its offsets 2 and 1; insets 4, 3, 4, 3.
    panel->setSize({200, 40});
    EXPECT_EQ(panel->getWidgetSkin()->calcSize(), osg::Vec2i(18 + 8, 16 + 6));
    gui::skin::Skin plain(nullptr, false);
    EXPECT_EQ(plain.calcSize(), osg::Vec2i(0, 0));

    panel->setText(L"a\tb");
    auto lines = panel->getWidgetSkin()->getTextLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], L"a" + std::wstring(static_cast<size_t>(gui().getTabSpacesCount()), L' ') + L"b");
}

TEST_F(SkinTest, AWidgetsMeasureIsKeptOnlyUntilItsLookOrSizeChanges) {
    auto* panel = new gui::Panel();
    panel->setSize({200, 40});
    panel->setText(L"Hi");
    osg::Vec2i const hi = panel->getPrefSize();
    EXPECT_EQ(panel->getPrefSize(), hi);
    panel->setText(L"Hello");
    // "Hi" measures the 18-pixel picture; "Hello" its 40 pixels of text, both plus insets 4 and 4.
    EXPECT_EQ(hi.x, 18 + 8);
    EXPECT_EQ(panel->getPrefSize().x, 40 + 8);
    gui::Insets const wider(10, 3, 10, 3);
    panel->getWidgetSkin()->getData()->setInsets(wider);
    EXPECT_EQ(panel->getPrefSize().x, 40 + 20);
    // At a width too narrow for the text the skin shortens it with an ellipsis.
    panel->setSize({0, 40});
    EXPECT_LT(panel->getPrefSize().x, 40 + 20);
}

TEST_F(SkinTest, ZoomedWidgetDrawsThroughATargetAndKeepsItsSize) {
    auto* panel = new gui::Panel();
    panel->setSize({200, 100});
    panel->setZoom(2.0f);
    update();
    gui::skin::Skin* skin = panel->getWidgetSkin();
    EXPECT_EQ(panel->getSize(), osg::Vec2i(200, 100));
    ASSERT_NE(skin->getTarget(), nullptr);
    EXPECT_EQ(skin->getTargetSize(), osg::Vec2i(100, 50));
    EXPECT_EQ(backend().countEvents("createFrameBuffer"), 1u);
    EXPECT_GE(backend().countEvents("bindFrameBuffer"), 2u) << "bound to draw into, then unbound";
    EXPECT_EQ(skin->getBkg()->getSize(), osg::Vec2i(100, 50)) << "drawn at the non-zoomed size";

    backend().clearEvents();
    panel->draw();
    rastTexture const* targetTexture = skin->getTargetImage()->getTexture();
    EXPECT_EQ(targetTexture, skin->getTarget()->getTexture());
    EXPECT_EQ(backend().countEvents("drawQuads"), 1u) << ::testing::PrintToString(backend().getEvents());
    EXPECT_EQ(backend().countEvents(texPrefix(targetTexture)), 1u);
    ASSERT_FALSE(backend().getDraws().empty());
    rastQuad const& quad = backend().getDraws().back().quads.at(0);
    EXPECT_FLOAT_EQ(quad.w, 200.0f) << "the picture stretches over the zoomed size";

    // Another frame keeps the target; zoom 1 drops it.
    frame();
    EXPECT_EQ(backend().countEvents("createFrameBuffer"), 0u);
    EXPECT_EQ(panel->getSize(), osg::Vec2i(200, 100));
    panel->setZoom(1.0f);
    update();
    EXPECT_EQ(skin->getTarget(), nullptr);
    EXPECT_EQ(panel->getSize(), osg::Vec2i(200, 100));

    // Forced through a target at zoom 1, a widget keeps its size; with size 0 it gets no target.
    panel->setDrawToTarget(true);
    panel->setDirty(gui::Widget::DirtySelf);
    update();
    ASSERT_NE(skin->getTarget(), nullptr);
    EXPECT_EQ(skin->getTargetSize(), osg::Vec2i(200, 100));
    auto* empty = new gui::Panel();
    empty->getWidgetSkin()->setSkinData(new gui::skin::Data(nullptr), true);  // no minimum size
    empty->setDrawToTarget(true);
    backend().clearEvents();
    update();
    EXPECT_EQ(empty->getWidgetSkin()->getTarget(), nullptr);
    EXPECT_EQ(backend().countEvents("createFrameBuffer"), 0u);
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
}

TEST_F(SkinTest, ShaderEffectDrawsTheTargetInsteadOfThePicture) {
    auto* panel = new gui::Panel();
    panel->setSize({50, 30});
    update();
    RecordingEffect effect;
    panel->setShaderEffect(&effect);
    EXPECT_TRUE(panel->getDrawToTarget());
    update();
    gui::skin::Skin* skin = panel->getWidgetSkin();
    ASSERT_NE(skin->getTarget(), nullptr);
    EXPECT_EQ(effect.redrawSize, osg::Vec2i(50, 30));

    backend().clearEvents();
    panel->draw();
    EXPECT_EQ(effect.draws, 1);
    EXPECT_EQ(effect.texture, skin->getTarget()->getTexture());
    EXPECT_EQ(backend().countEvents("drawQuads"), 0u) << "the effect draws, not the picture";
    gui::GraphicCommands commands;
    panel->make(&commands);
    EXPECT_EQ(effect.makes, 1);
    replayDrawPass(backend(), commands);

    panel->setShaderEffect(nullptr);
    EXPECT_EQ(effect.destroyed, 1);
    EXPECT_TRUE(panel->getDirty());
    update();
    EXPECT_EQ(skin->getTarget(), nullptr);
}

TEST_F(SkinTest, RecordedRoadReplaysToTheSameEvents) {
    auto* panel = new gui::Panel();
    panel->setPosition({30, 40});
    panel->setSize({120, 60});
    panel->setText(L"Text");
    auto* child = new gui::Panel();
    child->setPosition({10, 10});
    child->setSize({40, 20});
    panel->insertWidget(child);
    for (bool target : {false, true}) {
        SCOPED_TRACE(target ? "through a target" : "direct");
        panel->setDrawToTarget(target);
        panel->setDirty(gui::Widget::DirtyAll);
        update();
        ASSERT_EQ(panel->getWidgetSkin()->getTarget() != nullptr, target);

        backend().clearEvents();
        panel->draw();
        std::vector<std::string> const direct = backend().getEvents();
        gui::GraphicCommands commands;
        panel->make(&commands);
        EXPECT_EQ(replayDrawPass(backend(), commands), direct);
        EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
    }

    // Into the target, both roads draw the same as well.
    std::vector<std::string> const prefixes{"bindFrameBuffer", "drawQuads", "pushClipRect", "popClipRect"};
    panel->setDirty(gui::Widget::DirtySelf);
    gui().processMessages();
    backend().clearEvents();
    gui().doRedraw();
    std::vector<std::string> const direct = backend().getEvents(prefixes);
    gui::GraphicCommands commands;
    panel->make(&commands);
    backend().clearEvents();
    for (gui::GraphicCommand* c : commands.getCommands())
        c->doRedraw();
    EXPECT_EQ(backend().getEvents(prefixes), direct);
    for (auto it = commands.getCommands().rbegin(); it != commands.getCommands().rend(); ++it)
        (*it)->release();
}

namespace {

// The same scene over the null backend, whose calls allocate nothing.
class SkinSteadyFrameTest : public SkinTest {
protected:
    void SetUp() override {
        recordingBackend = false;
        SkinTest::SetUp();
    }
};

}  // namespace

TEST_F(SkinSteadyFrameTest, RecordingThroughATargetAllocatesNothingOnceWarm) {
    auto* panel = new gui::Panel();
    panel->setSize({80, 40});
    panel->setText(L"Steady");
    panel->insertWidget(new gui::Panel());
    panel->setDrawToTarget(true);
    update();
    gui::GraphicCommands commands;
    auto recordAndReplay = [&] {
        panel->make(&commands);
        for (gui::GraphicCommand* c : commands.getCommands())
            c->doRedraw();
        for (gui::GraphicCommand* c : commands.getCommands())
            c->draw();
        for (auto it = commands.getCommands().rbegin(); it != commands.getCommands().rend(); ++it)
            (*it)->release();
        commands.clear();
    };
    recordAndReplay();
    recordAndReplay();
    vurel_test::AllocationCounter counter;
    recordAndReplay();
    EXPECT_EQ(counter.count(), 0u);
}
