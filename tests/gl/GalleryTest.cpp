#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GlFixture.h"
#include "GuiFixture.h"
#include "HeadlessSession.h"
#include "Options.h"
#include "Scene.h"
#include "Script.h"
#include "ScriptPlayer.h"
#include "ToggleButton.h"
#include "WindowBase.h"

// The gallery (examples/gallery) as its users see it: a scripted session
// compared with a reference picture, and the command line and script format
// with their messages.

namespace vurel_test {
namespace {

// Window resources go through ./vurel/loader/CreateWindow.lua: the gallery
// works from the repository root, wherever the test was started.
class InRootDir {
public:
    InRootDir() : saved_(std::filesystem::current_path(error_)) {
        std::filesystem::current_path(gallery::Scene::rootDir(), error_);
    }
    ~InRootDir() { std::filesystem::current_path(saved_, error_); }

private:
    std::error_code error_;
    std::filesystem::path saved_;
};

std::string parseError(std::string const& text) {
    gallery::Script script;
    std::string error;
    EXPECT_FALSE(script.parse(text, "script.txt", error));
    EXPECT_TRUE(script.empty());
    return error;
}

TEST(GalleryScript, ParsesEveryCommandAndNamesTheLineOfAnError) {
    gallery::Script script;
    std::string error;
    ASSERT_TRUE(script.parse("# a comment\n\n  move 10 -20\ndown\nup right\nclick 5 6\nwheel -2\nkey page up\n"
                             "keydown left shift\nkeyup left shift\ntype Hé llo\nwait 3 frames\nwait 0.25 s\n"
                             "screenshot out dir/shot.png\r\n",
                             "script.txt", error))
        << error;
    auto const& c = script.getCommands();
    ASSERT_EQ(c.size(), 12u);
    using Kind = gallery::ScriptCommand::Kind;
    EXPECT_EQ(c[0].kind, Kind::Move);
    EXPECT_EQ(c[0].line, 3);
    EXPECT_EQ(c[0].y, -20);
    EXPECT_EQ(c[1].button, gui::MouseButtonLeft);
    EXPECT_EQ(c[2].button, gui::MouseButtonRight);
    EXPECT_EQ(c[3].kind, Kind::Click);
    EXPECT_EQ(c[4].amount, -2);
    EXPECT_EQ(c[5].key, gui::KeyPageUp);
    EXPECT_EQ(c[6].key, gui::KeyLeftShift);
    EXPECT_EQ(c[8].text, L"Hé llo");
    EXPECT_EQ(c[9].amount, 3);
    EXPECT_DOUBLE_EQ(c[10].seconds, 0.25);
    EXPECT_EQ(c[11].file, "out dir/shot.png");

    EXPECT_EQ(parseError("move 1 2\n\n# fine so far\nmove 3 4\nclick 1 1\nwait 1 s\njump 3\n"),
              "script.txt:7: unknown command 'jump'");
    EXPECT_EQ(parseError("move 1"), "script.txt:1: missing arguments for 'move': use 'move X Y'");
    EXPECT_EQ(parseError("click 1 2 3"), "script.txt:1: too many arguments for 'click': use 'click X Y'");
    EXPECT_EQ(parseError("move 1 x2"), "script.txt:1: bad number 'x2'");
    EXPECT_EQ(parseError("down top"), "script.txt:1: unknown mouse button 'top': use left, right or middle");
    EXPECT_EQ(parseError("key\n"), "script.txt:1: missing key name for 'key'");
    EXPECT_EQ(parseError("keydown hyper"), "script.txt:1: unknown key 'hyper'");
    EXPECT_EQ(parseError("wait 2 minutes"), "script.txt:1: unknown unit 'minutes' for 'wait': use 'frames' or 's'");
    EXPECT_EQ(parseError("wait -1 frames"), "script.txt:1: wait of -1 frames is out of range (0 to 100000)");
    EXPECT_EQ(parseError("wait 1e9 s"), "script.txt:1: wait of 1e9 s is out of range (0 to 3600)");
    EXPECT_EQ(parseError("type"), "script.txt:1: missing text for 'type'");
    EXPECT_EQ(parseError("screenshot"), "script.txt:1: missing file name for 'screenshot'");

    EXPECT_FALSE(script.load(dataPath("no_such_script.txt"), error));
    EXPECT_EQ(error, dataPath("no_such_script.txt") + ": cannot read the script");
}

// Records on which frame the player asked for screenshots.
struct FrameHost : gallery::ScriptHost {
    int frame = 0;
    std::vector<std::string> shots;
    double getTime() const override { return frame / 60.0; }
    float getScale() const override { return 1.0f; }
    bool screenshotNextFrame(std::string const& file) override {
        shots.push_back(file + "@" + std::to_string(frame));
        return true;
    }
};

TEST(GalleryScript, WaitsAndScreenshotsEndTheBatchOfAFrame) {
    gallery::Script script;
    std::string error;
    ASSERT_TRUE(script.parse("screenshot a\nwait 2 frames\nscreenshot b\nwait 0.5 s\nscreenshot c\nscreenshot d\n",
                             "s", error));
    gallery::ScriptPlayer player(script);
    FrameHost host;
    while (!player.finished() && host.frame < 1000) {
        ++host.frame;
        player.beforeFrame(host);
    }
    // Two frames run between a and b; half a second (30 frames) between b and c.
    EXPECT_EQ(host.shots, (std::vector<std::string>{"a@1", "b@4", "c@35", "d@36"}));
    EXPECT_EQ(host.frame, 37);
}

TEST(GalleryOptions, ReadsTheCommandLine) {
    gallery::Options options;
    std::string message;
    char const* headless[] = {"gallery"};
    EXPECT_EQ(gallery::Options::parse(1, headless, options, message), gallery::Options::Result::Run);
    EXPECT_FALSE(options.window);
    EXPECT_EQ(options.screenshot, "gallery.png");

    char const* window[] = {"gallery", "--window", "--scale", "2", "--script", "s.txt"};
    options = {};
    EXPECT_EQ(gallery::Options::parse(6, window, options, message), gallery::Options::Result::Run);
    EXPECT_TRUE(options.window);
    EXPECT_FLOAT_EQ(options.scale, 2.0f);
    EXPECT_EQ(options.script, "s.txt");
    EXPECT_EQ(options.screenshot, "");  // a window writes a picture only when asked

    char const* help[] = {"gallery", "--help"};
    EXPECT_EQ(gallery::Options::parse(2, help, options, message), gallery::Options::Result::Help);
    EXPECT_NE(message.find("wait N frames"), std::string::npos);

    char const* badScale[] = {"gallery", "--scale", "9"};
    EXPECT_EQ(gallery::Options::parse(3, badScale, options, message), gallery::Options::Result::Error);
    EXPECT_EQ(message, "bad --scale '9': use a number from 0.5 to 4");
    char const* noValue[] = {"gallery", "--script"};
    EXPECT_EQ(gallery::Options::parse(2, noValue, options, message), gallery::Options::Result::Error);
    EXPECT_EQ(message, "option --script needs a value (see --help)");
    char const* unknown[] = {"gallery", "--fast"};
    EXPECT_EQ(gallery::Options::parse(2, unknown, options, message), gallery::Options::Result::Error);
    EXPECT_EQ(message, "unknown option '--fast' (see --help)");
}

TEST(GallerySession, AMissingSkinFailsWithTheToolkitsMessage) {
    std::string const skin = dataPath("no_such_skin.lua");
    gallery::HeadlessSession session(1.0f, skin);
    std::string error;
    EXPECT_FALSE(session.start(error));
    EXPECT_EQ(error.rfind("Cannot load gui skin from " + skin + "!\nError:", 0), 0u) << error;
}

// Hover a button, press a check box, open the modal dialog: the picture
// matches the reference, and the widgets are in the states the input left.
TEST(GallerySession, ScriptedSessionMatchesTheReferencePicture) {
    InRootDir root;
    gallery::HeadlessSession session(1.0f, gallery::Scene::defaultSkinFile());
    std::string error;
    ASSERT_TRUE(session.start(error)) << error;
    if (!session.hasGl())
        GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
    gallery::Script script;
    ASSERT_TRUE(script.load(dataPath("gallery_script.txt"), error)) << error;
    session.play(script);

    gallery::Scene& scene = *session.getScene();
    ASSERT_NE(scene.getWindow("dialog"), nullptr);
    EXPECT_TRUE(scene.getWindow("dialog")->getVisible(false));
    gui::WindowBase* main = scene.getWindow("main");
    ASSERT_NE(main, nullptr);
    auto* snap = dynamic_cast<gui::ToggleButton*>(main->findWidgetByName(L"snap"));
    ASSERT_NE(snap, nullptr);
    EXPECT_EQ(snap->getState(), 1);
    gui::Widget* status = main->findWidgetByName(L"status");
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(status->getText(), L"Snap to grid is on.");

    std::vector<uint8_t> pixels;
    int width = 0, height = 0;
    ASSERT_TRUE(session.readPixels(pixels, width, height));
    expectGoldenPicture("gallery", pixels, width, height, 12);
}

struct Picture {
    std::vector<uint8_t> rgba;
    int width = 0, height = 0;

    int channel(int x, int y, int c) const { return rgba[(size_t(y) * size_t(width) + size_t(x)) * 4 + size_t(c)]; }
    // Whether the 3 x 3 pixels around (x, y) are all of one colour.
    bool flatAround(int x, int y) const {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                for (int c = 0; c < 3; ++c)
                    if (std::abs(channel(x + dx, y + dy, c) - channel(x, y, c)) > 2)
                        return false;
        return true;
    }
};

bool drawGallery(float scale, Picture& out) {
    InRootDir root;
    gallery::HeadlessSession session(scale, gallery::Scene::defaultSkinFile());
    std::string error;
    EXPECT_TRUE(session.start(error)) << error;
    if (!session.hasGl())
        return false;
    session.play(gallery::Script());
    EXPECT_TRUE(session.readPixels(out.rgba, out.width, out.height));
    return true;
}

// Positions, sizes and clip rectangles all follow the UI scale: wherever the
// 1x picture is flat, the 2x one has the same colour at twice the position.
TEST(GallerySession, AtTwiceTheScaleThePictureIsTheSameTwiceAsLarge) {
    Picture one, two;
    if (!drawGallery(1.0f, one))
        GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
    ASSERT_TRUE(drawGallery(2.0f, two));
    ASSERT_EQ(two.width, 2 * one.width);
    ASSERT_EQ(two.height, 2 * one.height);
    int compared = 0, differing = 0;
    for (int y = 1; y + 1 < one.height; y += 7)
        for (int x = 1; x + 1 < one.width; x += 7) {
            if (!one.flatAround(x, y))
                continue;
            ++compared;
            for (int c = 0; c < 3; ++c)
                if (std::abs(two.channel(2 * x + 1, 2 * y + 1, c) - one.channel(x, y, c)) > 6) {
                    ++differing;
                    break;
                }
        }
    EXPECT_GT(compared, 10000);
    EXPECT_EQ(differing, 0);
}

}  // namespace
}  // namespace vurel_test
