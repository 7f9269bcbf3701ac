#pragma once

#include <string>

#include "Script.h"

namespace gallery {

// What the player needs from the program that runs the frames.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;
    // Seconds on the clock the frames run by.
    virtual double getTime() const = 0;
    // Raw window pixels per UI unit.
    virtual float getScale() const = 0;
    // The key state the application reports, for modifiers.
    virtual void setKeyPressed(gui::KeyboardButton, bool) {}
    // Writes the next frame drawn to `file`; false when there are no pixels.
    virtual bool screenshotNextFrame(std::string const& file) = 0;
};

// Replays a script as gui::GUI input, frame by frame. Before each frame the
// program calls beforeFrame, which issues the commands that are due; a wait
// or a screenshot ends the batch of the frame.
class ScriptPlayer {
public:
    explicit ScriptPlayer(Script script) : script_(std::move(script)) {}

    void beforeFrame(ScriptHost& host);
    // Every command issued and the last wait over, as of the last beforeFrame.
    bool finished() const { return finished_; }
    // Screenshots that could not be written.
    int getFailedScreenshots() const { return failedScreenshots_; }

private:
    bool waiting_(ScriptHost const& host) const;
    // Issues one command; false when it ends the frame's batch.
    bool issue_(ScriptCommand const& command, ScriptHost& host);
    void keyDown_(gui::KeyboardButton key, ScriptHost& host);
    void keyUp_(gui::KeyboardButton key, ScriptHost& host);
    void type_(std::wstring const& text);

    Script script_;
    size_t next_ = 0;
    long frame_ = 0;
    long resumeFrame_ = 0;
    double resumeTime_ = 0.0;
    bool finished_ = false;
    int failedScreenshots_ = 0;
};

}  // namespace gallery
