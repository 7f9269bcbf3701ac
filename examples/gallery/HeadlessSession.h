#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Scene.h"
#include "ScriptPlayer.h"

namespace gui {
class HeadlessGlApplication;
}

namespace gallery {

// The gallery without a window: an EGL context, the toolkit with the skin,
// the scene, and a clock that moves 1/60 s a frame, so every run of the same
// script draws the same pictures.
class HeadlessSession : public ScriptHost {
public:
    static constexpr double kFrameTime = 1.0 / 60.0;

    HeadlessSession(float scale, std::string skinFile);
    // Tears down in the order the toolkit needs: scene, toolkit, application.
    ~HeadlessSession() override;
    HeadlessSession(HeadlessSession const&) = delete;
    HeadlessSession& operator=(HeadlessSession const&) = delete;

    // Builds everything and runs the first frames, which lay the windows out.
    // Answers false with the reason (the toolkit's own message for a skin
    // that cannot be loaded).
    bool start(std::string& error);
    // Plays the script to its end, then runs frames until the picture has settled.
    void play(Script const& script);
    void runFrames(int count);

    // Whether frames have pixels (an EGL context was found).
    bool hasGl() const;
    bool writePng(std::string const& file);
    // The frame drawn last, RGBA rows from the top.
    bool readPixels(std::vector<uint8_t>& rgba, int& width, int& height);
    Scene* getScene() const { return scene_.get(); }
    int getFailedScreenshots() const { return failedScreenshots_; }

    double getTime() const override;
    float getScale() const override { return scale_; }
    void setKeyPressed(gui::KeyboardButton key, bool pressed) override;
    bool screenshotNextFrame(std::string const& file) override;

private:
    void frame_();

    float scale_;
    std::string skinFile_;
    gui::HeadlessGlApplication* app_ = nullptr;  // deleted by gui::Application::destroy
    bool guiCreated_ = false;
    std::unique_ptr<Scene> scene_;
    std::vector<std::string> pendingScreenshots_;
    int failedScreenshots_ = 0;
};

}  // namespace gallery
