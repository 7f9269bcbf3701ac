#pragma once

#include <memory>
#include <string>

#include "Scene.h"
#include "ScriptPlayer.h"

namespace gui {
class SdlApplication;
}

namespace gallery {

// The gallery in an SDL2 window: a real clock and real input, with a script
// (if any) replayed on top from the first frame.
class WindowSession : public ScriptHost {
public:
    WindowSession(float scale, std::string skinFile);
    ~WindowSession() override;
    WindowSession(WindowSession const&) = delete;
    WindowSession& operator=(WindowSession const&) = delete;

    bool start(std::string& error);
    // Runs until the window is closed; the screenshot, when asked for, is the
    // last frame. Answers false when that picture could not be written.
    bool run(Script const& script, std::string const& screenshot);

    double getTime() const override;
    float getScale() const override { return scale_; }
    bool screenshotNextFrame(std::string const& file) override;

private:
    float scale_;
    std::string skinFile_;
    gui::SdlApplication* app_ = nullptr;  // deleted by gui::Application::destroy
    bool guiCreated_ = false;
    std::unique_ptr<Scene> scene_;
};

}  // namespace gallery
