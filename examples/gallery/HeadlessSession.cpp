#include "HeadlessSession.h"

#include "GUI.h"
#include "app/HeadlessGlApplication.h"
#include "rast/backends/gl/GlBackend.h"

namespace gallery {

namespace {

// Layouts settle over a frame or two after a change; these frames let them,
// at the start before any input and after the last command of a script.
constexpr int kSettleFrames = 3;

}  // namespace

HeadlessSession::HeadlessSession(float scale, std::string skinFile) : scale_(scale), skinFile_(std::move(skinFile)) {}

HeadlessSession::~HeadlessSession() {
    scene_.reset();
    if (guiCreated_)
        gui::GUI::destroy();
    if (app_)
        gui::Application::destroy();
}

bool HeadlessSession::start(std::string& error) {
    osg::Vec2i const size = Scene::pixelSize(scale_);
    app_ = new gui::HeadlessGlApplication(size, Scene::assetDir());
    app_->init();
    try {
        guiCreated_ = true;
        gui::GUI::create(skinFile_, size, scale_);
    } catch (gui::GUI::Exception const& e) {
        error = e.what();
        return false;
    }
    scene_ = std::make_unique<Scene>(skinFile_);
    if (!scene_->build(error))
        return false;
    app_->setClearColor(scene_->getClearColor());
    runFrames(kSettleFrames);
    return true;
}

void HeadlessSession::play(Script const& script) {
    if (!app_ || !scene_)
        return;
    ScriptPlayer player(script);
    while (!player.finished()) {
        player.beforeFrame(*this);
        frame_();
    }
    failedScreenshots_ += player.getFailedScreenshots();
    runFrames(kSettleFrames);
}

void HeadlessSession::runFrames(int count) {
    for (int i = 0; i < count; ++i)
        frame_();
}

void HeadlessSession::frame_() {
    app_->runFrame();
    for (std::string const& file : pendingScreenshots_)
        if (!app_->screenshot(file.c_str()))
            ++failedScreenshots_;
    pendingScreenshots_.clear();
    app_->advanceTime(kFrameTime);
}

bool HeadlessSession::hasGl() const { return app_ && app_->hasGl(); }

bool HeadlessSession::writePng(std::string const& file) { return app_ && app_->screenshot(file.c_str()); }

bool HeadlessSession::readPixels(std::vector<uint8_t>& rgba, int& width, int& height) {
    rastGlBackend* gl = app_ ? app_->getGlBackend() : nullptr;
    return gl && gl->readPixels(rgba, width, height);
}

double HeadlessSession::getTime() const { return app_ ? app_->getTime() : 0.0; }

void HeadlessSession::setKeyPressed(gui::KeyboardButton key, bool pressed) {
    if (app_)
        app_->setKeyPressed(key, pressed);
}

bool HeadlessSession::screenshotNextFrame(std::string const& file) {
    if (!hasGl())
        return false;
    pendingScreenshots_.push_back(file);
    return true;
}

}  // namespace gallery
