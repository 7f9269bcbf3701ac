// The gallery: every widget kind of VUREL with the default skin, built from
// Lua window resources. Headless by default (writes gallery.png); --window
// opens an SDL2 window; --script replays input. See --help.

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "HeadlessSession.h"
#include "Options.h"
#include "Scene.h"
#include "Script.h"
#include "WindowSession.h"

namespace {

namespace fs = std::filesystem;

// Paths from the command line are meant from where the program was started.
void makeAbsolute(std::string& path) {
    if (!path.empty())
        path = fs::absolute(path).lexically_normal().string();
}

// Window resources go through the loader script ./vurel/loader/CreateWindow.lua,
// so the program works from the folder that holds it.
bool enterRootDir() {
    if (fs::exists("vurel/loader/CreateWindow.lua"))
        return true;
    std::error_code error;
    fs::current_path(gallery::Scene::rootDir(), error);
    if (error || !fs::exists("vurel/loader/CreateWindow.lua")) {
        std::fprintf(stderr, "gallery: cannot find vurel/loader/CreateWindow.lua (looked in %s)\n",
                     gallery::Scene::rootDir().c_str());
        return false;
    }
    return true;
}

int runHeadless(gallery::Options const& options, gallery::Script const& script, std::string const& skin) {
    gallery::HeadlessSession session(options.scale, skin);
    std::string error;
    if (!session.start(error)) {
        std::fprintf(stderr, "gallery: %s%s", error.c_str(), error.empty() || error.back() != '\n' ? "\n" : "");
        return 1;
    }
    if (!session.hasGl()) {
        std::fprintf(stderr, "gallery: no OpenGL 3.3 core context through EGL here, so there is no picture\n");
        return 1;
    }
    session.play(script);
    if (!session.writePng(options.screenshot)) {
        std::fprintf(stderr, "gallery: cannot write %s\n", options.screenshot.c_str());
        return 1;
    }
    if (session.getFailedScreenshots() > 0) {
        std::fprintf(stderr, "gallery: %d screenshot(s) of the script could not be written\n",
                     session.getFailedScreenshots());
        return 1;
    }
    osg::Vec2i const size = gallery::Scene::pixelSize(options.scale);
    std::printf("gallery: wrote %s (%dx%d)\n", options.screenshot.c_str(), size.x, size.y);
    return 0;
}

int runWindow(gallery::Options const& options, gallery::Script const& script, std::string const& skin) {
    gallery::WindowSession session(options.scale, skin);
    std::string error;
    if (!session.start(error)) {
        std::fprintf(stderr, "gallery: %s%s", error.c_str(), error.empty() || error.back() != '\n' ? "\n" : "");
        return 1;
    }
    if (!session.run(script, options.screenshot)) {
        std::fprintf(stderr, "gallery: cannot write %s\n", options.screenshot.c_str());
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    gallery::Options options;
    std::string message;
    switch (gallery::Options::parse(argc, argv, options, message)) {
    case gallery::Options::Result::Help:
        std::printf("%s", message.c_str());
        return 0;
    case gallery::Options::Result::Error:
        std::fprintf(stderr, "gallery: %s\n", message.c_str());
        return 2;
    case gallery::Options::Result::Run:
        break;
    }
    // Read before anything moves, so that messages name the file as it was given.
    gallery::Script script;
    if (!options.script.empty() && !script.load(options.script, message)) {
        std::fprintf(stderr, "gallery: %s\n", message.c_str());
        return 2;
    }
    std::string skin = options.skin.empty() ? gallery::Scene::defaultSkinFile() : options.skin;
    makeAbsolute(skin);
    makeAbsolute(options.screenshot);
    if (!enterRootDir())
        return 1;
    return options.window ? runWindow(options, script, skin) : runHeadless(options, script, skin);
}
