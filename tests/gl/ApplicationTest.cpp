#include <SDL.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

#include "GUI.h"
#include "GuiFixture.h"
#include "LogCapture.h"
#include "app/HeadlessGlApplication.h"
#include "app/SdlApplication.h"
#include "app/SdlInput.h"
#include "rast/Shader.h"
#include "rast/ShaderQuads.h"
#include "rast/backends/gl/PngFile.h"

namespace vurel_test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
using IgnoreLeaks = __lsan::ScopedDisabler;
#else
struct IgnoreLeaks {
    IgnoreLeaks() {}  // user-provided, so an unused instance draws no warning
};
#endif

std::array<int, 4> pngPixel(std::string const& path, int x, int y, int& w, int& h) {
    std::vector<uint8_t> rgba;
    if (!rastReadPng(path.c_str(), rgba, w, h) || x >= w || y >= h)
        return {-1, -1, -1, -1};
    size_t const i = (size_t(y) * size_t(w) + size_t(x)) * 4;
    return {rgba[i], rgba[i + 1], rgba[i + 2], rgba[i + 3]};
}

TEST(HeadlessGlApplication, DrawsFramesAndWritesScreenshotsAtTheWindowSize) {
    auto* app = new gui::HeadlessGlApplication({48, 32}, VUREL_ASSET_DIR);
    ASSERT_TRUE(app->init());
    if (!app->hasGl()) {
        gui::Application::destroy();
        GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
    }
    gui::GUI::create(dataPath("minimal_skin.lua"), {48, 32}, 1.0f);
    app->setClearColor({0, 0.5f, 0.5f, 1});
    // The program's own drawing, after the toolkit's: a quad in the top-left corner.
    rastShaderQuads corner;
    corner.addBatchQuad(0, 0, 8, 8);
    auto draw = std::make_shared<std::function<void()>>([&] {
        rastRenderer::ViewportGuard viewport(osg::Recti(0, 0, app->getSize().x, app->getSize().y));
        rastRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0, float(app->getSize().x), float(app->getSize().y), 0);
        rastRenderer::get()->getShader()->setColor({1, 1, 0, 1});
        corner.draw(*rastRenderer::get()->getShader());
        rastRenderer::get()->getShader()->setColor({1, 1, 1, 1});
    });
    app->addUpdateCallback(draw);
    app->runFrame();

    std::filesystem::create_directories(VUREL_GL_OUTPUT_DIR);
    std::string const path = std::string(VUREL_GL_OUTPUT_DIR) + "/headless.png";
    ASSERT_TRUE(app->makeScreenshot(path.c_str()));
    EXPECT_EQ(app->getScreenshotExtention(), "png");
    int w = 0, h = 0;
    EXPECT_EQ(pngPixel(path, 2, 2, w, h), (std::array<int, 4>{255, 255, 0, 255}));
    EXPECT_EQ(pngPixel(path, 20, 20, w, h), (std::array<int, 4>{0, 128, 128, 255}));
    EXPECT_EQ(w, 48);
    EXPECT_EQ(h, 32);

    // A new window size is a new target; the next frame fills it.
    ASSERT_TRUE(app->createMainWindow(40, 24, false));
    app->runFrame();
    ASSERT_TRUE(app->screenshot(path.c_str()));
    EXPECT_EQ(pngPixel(path, 39, 23, w, h), (std::array<int, 4>{0, 128, 128, 255}));
    EXPECT_EQ(w, 40);
    EXPECT_EQ(h, 24);

    app->removeUpdateCallback(draw);
    gui::GUI::destroy();
    gui::Application::destroy();
    EXPECT_EQ(rastRenderer::get(), nullptr);
}

TEST(SdlInput, KeysAndButtonsTranslateToTheToolkitCodes) {
    EXPECT_EQ(gui::translateSdlKey(SDLK_a), 97);
    EXPECT_EQ(gui::translateSdlKey(SDLK_7), 55);
    EXPECT_EQ(gui::translateSdlKey(SDLK_RETURN), gui::KeyReturn);
    EXPECT_EQ(gui::translateSdlKey(SDLK_ESCAPE), gui::KeyEscape);
    EXPECT_EQ(gui::translateSdlKey(SDLK_BACKSPACE), gui::KeyBackspace);
    EXPECT_EQ(gui::translateSdlKey(SDLK_DELETE), gui::KeyDelete);
    EXPECT_EQ(gui::translateSdlKey(SDLK_UP), gui::KeyUp);
    EXPECT_EQ(gui::translateSdlKey(SDLK_LEFT), gui::KeyLeft);
    EXPECT_EQ(gui::translateSdlKey(SDLK_INSERT), gui::KeyInsert);
    EXPECT_EQ(gui::translateSdlKey(SDLK_PAGEDOWN), gui::KeyPageDown);
    EXPECT_EQ(gui::translateSdlKey(SDLK_F1), 282);
    EXPECT_EQ(gui::translateSdlKey(SDLK_F12), 293);
    EXPECT_EQ(gui::translateSdlKey(SDLK_F15), 296);
    EXPECT_EQ(gui::translateSdlKey(SDLK_KP_0), 256);
    EXPECT_EQ(gui::translateSdlKey(SDLK_KP_9), 265);
    EXPECT_EQ(gui::translateSdlKey(SDLK_KP_PLUS), 270);
    EXPECT_EQ(gui::translateSdlKey(SDLK_RSHIFT), gui::KeyRightShift);
    EXPECT_EQ(gui::translateSdlKey(SDLK_LSHIFT), gui::KeyLeftShift);
    EXPECT_EQ(gui::translateSdlKey(SDLK_RCTRL), gui::KeyRightCtrl);
    EXPECT_EQ(gui::translateSdlKey(SDLK_LCTRL), gui::KeyLeftCtrl);
    EXPECT_EQ(gui::translateSdlKey(SDLK_RALT), gui::KeyRightAlt);
    EXPECT_EQ(gui::translateSdlKey(SDLK_LALT), gui::KeyLeftAlt);
    EXPECT_EQ(gui::translateSdlKey(SDLK_PRINTSCREEN), gui::KeyPrintScreen);
    EXPECT_EQ(gui::translateSdlKey(SDLK_AUDIOPLAY), gui::KeyNone);
    EXPECT_EQ(gui::translateSdlButton(SDL_BUTTON_LEFT), gui::MouseButtonLeft);
    EXPECT_EQ(gui::translateSdlButton(SDL_BUTTON_RIGHT), gui::MouseButtonRight);
    EXPECT_EQ(gui::translateSdlButton(SDL_BUTTON_MIDDLE), gui::MouseButtonMiddle);
}

struct Listener : gui::GUI::MouseListener {
    std::vector<std::string> calls;
    void onMouseMove(int x, int y) override { calls.push_back("move " + std::to_string(x) + " " + std::to_string(y)); }
    void onMouseDown(int, int, gui::MouseButton b) override { calls.push_back("down " + std::to_string(b)); }
    void onMouseUp(int, int, gui::MouseButton b) override { calls.push_back("up " + std::to_string(b)); }
    void onMouseWheel(int, int, int d) override { calls.push_back("wheel " + std::to_string(d)); }
};

SDL_Event keyEvent(Uint32 type, SDL_Keycode key, Uint16 mod) {
    SDL_Event e{};
    e.type = type;
    e.key.keysym.sym = key;
    e.key.keysym.mod = mod;
    return e;
}

// SDL's dummy video driver has windows but no OpenGL: the application logs,
// runs over the null renderer, and still turns events into toolkit input.
TEST(SdlApplication, WithoutOpenGlRunsOnAndTurnsEventsIntoInput) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    LogCapture log;
    auto* app = new gui::SdlApplication(VUREL_ASSET_DIR);
    ASSERT_TRUE(app->init());
    EXPECT_FALSE(app->createMainWindow(64, 48, false));
    EXPECT_FALSE(app->hasGl());
    EXPECT_TRUE(log.contains("VUREL", 16, "running without drawing"));
    ASSERT_NE(rastRenderer::get(), nullptr);

    gui::GUI::create(dataPath("minimal_skin.lua"), {64, 48}, 1.0f);
    Listener mouse;
    gui::GUI::get()->addMouseListener(&mouse);
    std::vector<std::string> keys;
    auto keyboard = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [&](gui::KeyboardButton k, int, bool down) {
            keys.push_back(std::to_string(k) + (down ? " down" : " up"));
            return false;
        });
    gui::GUI::get()->addKeyboardCallback(keyboard);

    SDL_Event e{};
    e.type = SDL_MOUSEMOTION;
    e.motion.x = 10;
    e.motion.y = 12;
    app->handleEvent(e);
    e = SDL_Event{};
    e.type = SDL_MOUSEBUTTONDOWN;
    e.button.button = SDL_BUTTON_RIGHT;
    e.button.x = 10;
    e.button.y = 12;
    app->handleEvent(e);
    e.type = SDL_MOUSEBUTTONUP;
    app->handleEvent(e);
    e = SDL_Event{};
    e.type = SDL_MOUSEWHEEL;
    e.wheel.y = -2;
    app->handleEvent(e);
    app->handleEvent(keyEvent(SDL_KEYDOWN, SDLK_LSHIFT, KMOD_LSHIFT));
    EXPECT_TRUE(app->isKeyPressed(gui::KeyLeftShift));
    app->handleEvent(keyEvent(SDL_KEYDOWN, SDLK_LEFT, KMOD_LSHIFT));
    app->handleEvent(keyEvent(SDL_KEYUP, SDLK_LSHIFT, 0));
    EXPECT_FALSE(app->isKeyPressed(gui::KeyLeftShift));
    EXPECT_TRUE(app->isKeyPressed(gui::KeyLeft));
    e = SDL_Event{};
    e.type = SDL_TEXTINPUT;
    std::strcpy(e.text.text, "\xC3\xA9!");
    app->handleEvent(e);
    app->runFrame();

    EXPECT_EQ(mouse.calls, (std::vector<std::string>{"move 10 12", "down 2", "up 2", "wheel -2"}));
    EXPECT_EQ(keys, (std::vector<std::string>{"304 down", "276 down", "304 up"}));

    app->setClipboardText(L"copied");
    EXPECT_EQ(app->getClipboardText(), L"copied");
    app->setMouseCursor(41);
    EXPECT_EQ(app->getMouseCursor(), 41);
    EXPECT_FALSE(app->makeScreenshot("never.png"));
    EXPECT_GE(app->getTime(), 0.0);

    e = SDL_Event{};
    e.type = SDL_QUIT;
    app->handleEvent(e);
    EXPECT_FALSE(app->getRunning());

    gui::GUI::get()->removeMouseListener(&mouse);
    gui::GUI::destroy();
    gui::Application::destroy();
    EXPECT_EQ(rastRenderer::get(), nullptr);
    unsetenv("SDL_VIDEODRIVER");
}

// SDL's offscreen driver gives a window with a real OpenGL context: the
// window's own frame buffer stores rows bottom up, unlike the headless target.
TEST(SdlApplication, DrawsIntoItsWindowWithClipsFromTheTopLeft) {
    // SDL terminates its EGL display at the end, which unloads Mesa's driver
    // with a few bytes of its own still held: not ours to report. The same
    // drawing code runs under leak checks in the headless tests.
    IgnoreLeaks ignore;
    setenv("SDL_VIDEODRIVER", "offscreen", 1);
    auto* app = new gui::SdlApplication(VUREL_ASSET_DIR);
    if (!app->init() || !app->createMainWindow(64, 48, false) || !app->hasGl()) {
        gui::Application::destroy();
        unsetenv("SDL_VIDEODRIVER");
        GTEST_SKIP() << "no SDL window with OpenGL 3.3 core here";
    }
    gui::GUI::create(dataPath("minimal_skin.lua"), {64, 48}, 1.0f);
    app->setClearColor({0, 0, 1, 1});
    rastShaderQuads all;
    all.addBatchQuad(0, 0, 64, 48);
    auto draw = std::make_shared<std::function<void()>>([&] {
        rastRenderer::ViewportGuard viewport(osg::Recti(0, 0, 64, 48));
        rastRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0, 64, 48, 0);
        rastRenderer::ClipRectGuard clip(osg::Recti(0, 0, 32, 16));
        rastRenderer::get()->getShader()->setColor({1, 1, 0, 1});
        all.draw(*rastRenderer::get()->getShader());
        rastRenderer::get()->getShader()->setColor({1, 1, 1, 1});
    });
    app->addUpdateCallback(draw);
    std::filesystem::create_directories(VUREL_GL_OUTPUT_DIR);
    std::string const path = std::string(VUREL_GL_OUTPUT_DIR) + "/sdl.png";
    ASSERT_TRUE(app->makeScreenshot(path.c_str()));
    app->runFrame();

    int w = 0, h = 0;
    EXPECT_EQ(pngPixel(path, 1, 1, w, h), (std::array<int, 4>{255, 255, 0, 255}));
    EXPECT_EQ(pngPixel(path, 31, 15, w, h), (std::array<int, 4>{255, 255, 0, 255}));
    EXPECT_EQ(pngPixel(path, 32, 15, w, h), (std::array<int, 4>{0, 0, 255, 255}));
    EXPECT_EQ(pngPixel(path, 31, 16, w, h), (std::array<int, 4>{0, 0, 255, 255}));
    EXPECT_EQ(w, 64);
    EXPECT_EQ(h, 48);

    app->removeUpdateCallback(draw);
    gui::GUI::destroy();
    gui::Application::destroy();
    unsetenv("SDL_VIDEODRIVER");
}

}  // namespace
}  // namespace vurel_test
