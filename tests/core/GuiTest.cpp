#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "GuiFixture.h"
#include "LogCapture.h"
#include "OffscreenWindow.h"
#include "UpdateManager.h"
#include "WindowsManager.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"

using vurel_test::dataPath;
using vurel_test::GuiFixture;
using vurel_test::TestApplication;

namespace {

// Runs gui::GUI::create and answers the exception text, or "" when it succeeded.
std::string createError(std::string const& skin) {
    try {
        gui::GUI::create(skin, {800, 600}, 1.0f);
    } catch (gui::GUI::Exception const& e) {
        return e.what();
    }
    return "";
}

}  // namespace

TEST(GuiLifecycle, CreateFailsWithTheRightMessages) {
    TestApplication app;
    // No renderer: nothing is left behind.
    EXPECT_EQ(createError(dataPath("minimal_skin.lua")), "GUI render not created!\n");
    EXPECT_EQ(gui::GUI::get(), nullptr);

    rastRenderer::create(std::make_unique<rastRecordingBackend>());
    std::string const missing = dataPath("does_not_exist.lua");
    std::string error = createError(missing);
    EXPECT_EQ(error.rfind("Cannot load gui skin from " + missing + "!\nError:", 0), 0u) << error;
    EXPECT_EQ(error.back(), '\n');
    gui::GUI::destroy();

    error = createError(dataPath("syntax_error.lua"));
    EXPECT_NE(error.find("!\nError:"), std::string::npos);
    gui::GUI::destroy();

    EXPECT_EQ(createError(dataPath("no_skin_table.lua")), "Global Skin table not loaded!\n");
    gui::GUI::destroy();

    // A good skin; a second create keeps the first instance.
    EXPECT_EQ(createError(dataPath("minimal_skin.lua")), "");
    gui::GUI* first = gui::GUI::get();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(createError(dataPath("no_skin_table.lua")), "");
    EXPECT_EQ(gui::GUI::get(), first);
    ASSERT_NE(gui::UpdateManager::get(), nullptr);
    EXPECT_EQ(first->getSurfaceCount(), 1);
    gui::GUI::destroy();
    EXPECT_EQ(gui::GUI::get(), nullptr);
    EXPECT_EQ(gui::UpdateManager::get(), nullptr);
    rastRenderer::destroy();
}

TEST(GuiLifecycle, ScaleAtOrBelowZeroActsAsOne) {
    TestApplication app;
    rastRenderer::create(std::make_unique<rastRecordingBackend>());
    gui::GUI::create(dataPath("minimal_skin.lua"), {801, 601}, -2.0f);
    EXPECT_FLOAT_EQ(rastRenderer::get()->getScale(), 1.0f);
    EXPECT_EQ(gui::GUI::get()->getScreenSize(), osg::Vec2i(801, 601));
    gui::GUI::destroy();

    gui::GUI::create(dataPath("minimal_skin.lua"), {801, 601}, 2.0f);
    EXPECT_EQ(gui::GUI::get()->getScreenSize(), osg::Vec2i(400, 300));
    EXPECT_FLOAT_EQ(gui::GUI::get()->getScaleFactor(), 0.5f);
    gui::GUI::destroy();
    rastRenderer::destroy();
}

class GuiScaled : public GuiFixture {
protected:
    void SetUp() override {
        scale = 2.0f;
        GuiFixture::SetUp();
    }
};

TEST_F(GuiScaled, CoordinateConversionsWithScaleOffsetAndMouseScale) {
    // Raw (100, 50) with scale 2: toolkit (50, 25).
    EXPECT_EQ(gui().convertFromRawScreenPosition(100, 50), osg::Vec2i(50, 25));
    EXPECT_EQ(gui().convertToRawScreenPosition(50, 25), osg::Vec2i(100, 50));

    // A mouse scale equal to the renderer scale leaves positions as they were, but for the offset.
    gui().setMouseScale({2.0f, 2.0f});
    gui().setMouseOffset({10, -4});
    EXPECT_EQ(gui().convertFromRawScreenPosition(100, 50), osg::Vec2i(105, 48));
    EXPECT_EQ(gui().convertToRawScreenPosition(105, 48), osg::Vec2i(100, 50));

    // The viewport position moves the toolkit's origin, in units.
    gui().setViewportPosition({20, 7});
    EXPECT_EQ(gui().getScreenPosition(), osg::Vec2i(10, 3));
    EXPECT_EQ(gui().convertFromRawScreenPosition(100, 50), osg::Vec2i(95, 45));

    // Rectangles: each maximum is the minimum plus the scaled size, truncated on its own.
    osg::Recti const viewportRect = gui().screenToViewport(osg::Recti(1, 2, 6, 9));
    EXPECT_EQ(viewportRect, osg::Recti(12, 7, 22, 21));
    EXPECT_EQ(gui().viewportToScreen(osg::Recti(13, 7, 24, 22)), osg::Recti(-3, 0, 2, 7));

    gui().setViewportSize({1001, 501});
    EXPECT_EQ(gui().getViewportSize(), osg::Vec2i(1001, 501));
    EXPECT_EQ(gui().getScreenSize(), osg::Vec2i(500, 250));
    EXPECT_EQ(gui().getScreenPosition(), osg::Vec2i(10, 3));
}

TEST_F(GuiFixture, SurfacesAndTheirMouseFunctions) {
    EXPECT_FALSE(gui().getSurfaceIdValid(-1));
    EXPECT_FALSE(gui().getSurfaceIdValid(1));
    EXPECT_EQ(gui().getWindowsManager(-1), nullptr);
    EXPECT_EQ(gui().getWindowsManager(7), nullptr);
    ASSERT_NE(gui().getWindowsManager(0), nullptr);

    int const second = gui().createSurface();
    EXPECT_EQ(second, 1);
    EXPECT_EQ(gui().getWindowsManager(1)->getSurfaceId(), 1);
    EXPECT_EQ(gui::WindowsManager::get(1), gui().getWindowsManager(1));

    gui().mouseMove(30, 40);
    gui().processMessages();
    gui().setSurfaceMouseFunc(1, [](int x, int y) { return osg::Vec2i(x * 2, y + 1); });
    EXPECT_EQ(gui().getMousePosition(0), osg::Vec2i(30, 40));
    EXPECT_EQ(gui().getMousePosition(1), osg::Vec2i(60, 41));
    // A bad id answers the plain position; setters with bad ids do nothing.
    EXPECT_EQ(gui().getMousePosition(5), osg::Vec2i(30, 40));
    gui().setSurfaceMouseFunc(5, [](int, int) { return osg::Vec2i(); });
    gui().setSurfaceMouseCursorCallback(5, [](bool, int, gui::WindowBase*) {});
    // An empty function installs the identity again.
    gui().setSurfaceMouseFunc(1, nullptr);
    EXPECT_EQ(gui().getMousePosition(1), osg::Vec2i(30, 40));
}

TEST_F(GuiFixture, SettingsAndTheClippingGuard) {
    gui().setTabSpacesCount(-3);
    EXPECT_EQ(gui().getTabSpacesCount(), 0);
    gui().setTabSpacesCount(8);
    EXPECT_EQ(gui().getTabSpacesCount(), 8);

    gui().enableClipping(false);
    {
        gui::GUI::DisableClippingGuard guard;
        EXPECT_FALSE(gui().getClippingEnabled());
    }
    // Clipping is on after the guard even though it was off before.
    EXPECT_TRUE(gui().getClippingEnabled());
}

TEST_F(GuiFixture, DrawSetsUpTheFrameAndLeavesTheRendererBalanced) {
    app->setSize({640, 480});
    frame();
    auto const events = backend().getEvents({"viewport", "pushClipRect", "popClipRect", "projection", "modelView"});
    ASSERT_GE(events.size(), 4u);
    EXPECT_EQ(events[0], "viewport 0 0 640 480");
    EXPECT_EQ(events[1], "pushClipRect 0 0 640 480");
    EXPECT_EQ(backend().countEvents("endRedraw"), 1u);
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
    EXPECT_EQ(rastRenderer::get()->getTechnique(), 0);

    // The alternative technique is chosen while drawing for a headset.
    gui().setDrawToTargetVR(true);
    gui().draw();
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);

    // Drawing to a surface: a bad id does nothing; a good one restores the screen position and scale factor.
    backend().clearEvents();
    gui().drawToSurface(9, {64, 64}, {1, 1}, 0.5f, 2.0f);
    EXPECT_TRUE(backend().getEvents().empty());
    gui().setViewportPosition({5, 6});
    gui().drawToSurface(0, {64, 32}, {2, 2}, 0.5f, 2.0f);
    EXPECT_EQ(backend().getEvents({"viewport"}).front(), "viewport 0 0 64 32");
    EXPECT_EQ(gui().getScreenPosition(), osg::Vec2i(5, 6));
    EXPECT_EQ(gui().getOffscreenScaleFactor(), osg::Vec2f(1, 1));
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
}

TEST_F(GuiFixture, TheBackgroundPictureDrawsUnderTheWindowsOnTheScreenOnly) {
    std::vector<uint8_t> pixels(64 * 32 * 4, 255);
    rastRenderer::get()->getTextureManager()->addImage("bkg.png", {64, 32}, pixels.data());
    gui().setBkgPicture("bkg.png", false);
    frame();
    auto draws = backend().getEvents({"drawQuads"});
    ASSERT_EQ(draws.size(), 1u);
    ASSERT_EQ(backend().getDraws().size(), 1u);
    rastQuad const& q = backend().getDraws()[0].quads[0];
    EXPECT_EQ(q.x, (800 - 64) / 2) << "centred on the screen";
    EXPECT_EQ(q.y, (600 - 32) / 2);

    // Resized to fill the screen, and not drawn to other surfaces.
    gui().setBkgPicture("bkg.png", true);
    backend().clearEvents();
    frame();
    EXPECT_GE(backend().getDraws().at(0).quads[0].w, 800.0f);
    backend().clearEvents();
    gui().drawToSurface(0, {64, 64}, {1, 1}, 1.0f, 1.0f);
    EXPECT_EQ(backend().countEvents("drawQuads"), 0u);
}

TEST_F(GuiFixture, AnOffscreenWindowDrawsIntoATargetOnRequest) {
    auto* window = new gui::OffscreenWindow();
    window->setSize({40, 30});
    window->setPosition({300, 200});
    window->setVisible(true);
    frame();
    backend().clearEvents();
    gui().setViewportPosition({10, 10});
    gui().drawOffscreenWindow(window, {64, 48}, {2, 2}, 0.5f, 1.0f);
    auto const events = backend().getEvents({"viewport", "modelView", "pushClipRect"});
    ASSERT_GE(events.size(), 3u);
    EXPECT_EQ(events[0], "viewport 0 0 64 48");
    EXPECT_EQ(events[2], "modelView 300 200") << "the window's own translation, from the target's origin";
    EXPECT_EQ(rastRenderer::get()->getStackDepth(), 0);
    EXPECT_EQ(gui().getScreenPosition(), osg::Vec2i(10, 10));
    gui().drawOffscreenWindow(nullptr, {64, 48}, {1, 1}, 1.0f, 1.0f);
    gui::Widget::destroy(window);
}
