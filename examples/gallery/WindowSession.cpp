#include "WindowSession.h"

#include "GUI.h"
#include "app/SdlApplication.h"

namespace gallery {

WindowSession::WindowSession(float scale, std::string skinFile) : scale_(scale), skinFile_(std::move(skinFile)) {}

WindowSession::~WindowSession() {
    scene_.reset();
    if (guiCreated_)
        gui::GUI::destroy();
    if (app_)
        gui::Application::destroy();
}

bool WindowSession::start(std::string& error) {
    osg::Vec2i const size = Scene::pixelSize(scale_);
    app_ = new gui::SdlApplication(Scene::assetDir());
    if (!app_->init()) {
        error = "no SDL video (see the log above)";
        return false;
    }
    // Without OpenGL the window still runs, over the null renderer: logged.
    app_->createMainWindow(size.x, size.y, false);
    app_->setWindowTitle("VUREL gallery");
    try {
        guiCreated_ = true;
        gui::GUI::create(skinFile_, app_->getSize(), scale_);
    } catch (gui::GUI::Exception const& e) {
        error = e.what();
        return false;
    }
    scene_ = std::make_unique<Scene>(skinFile_);
    if (!scene_->build(error))
        return false;
    app_->setClearColor(scene_->getClearColor());
    return true;
}

bool WindowSession::run(Script const& script, std::string const& screenshot) {
    if (!app_ || !scene_)
        return false;
    // The first frames lay the windows out before any scripted input.
    for (int i = 0; i < 3 && app_->getRunning(); ++i)
        app_->runFrame();
    ScriptPlayer player(script);
    while (app_->getRunning()) {
        player.beforeFrame(*this);
        app_->runFrame();
    }
    if (screenshot.empty())
        return true;
    // A window's picture is whole only while a frame is drawn: draw one more.
    if (!app_->makeScreenshot(screenshot.c_str()))
        return false;
    app_->runFrame();
    return true;
}

double WindowSession::getTime() const { return app_ ? app_->getTime() : 0.0; }

bool WindowSession::screenshotNextFrame(std::string const& file) { return app_ && app_->makeScreenshot(file.c_str()); }

}  // namespace gallery
