#include "ScriptPlayer.h"

#include <cmath>

#include "GUI.h"

namespace gallery {

namespace {

// The key a character comes from, as a keyboard reports it with the text:
// letters as their lower-case key, other ASCII as itself, the rest with none.
gui::KeyboardButton keyOfCharacter(wchar_t c) {
    if (c >= L'A' && c <= L'Z')
        return static_cast<gui::KeyboardButton>(c - L'A' + L'a');
    if (c > 0 && c < 128)
        return static_cast<gui::KeyboardButton>(c);
    return gui::KeyNone;
}

int toRaw(int units, float scale) { return static_cast<int>(std::lround(static_cast<double>(units) * scale)); }

}  // namespace

bool ScriptPlayer::waiting_(ScriptHost const& host) const {
    // A small allowance, so that sixty frames of 1/60 s make one second.
    return frame_ < resumeFrame_ || host.getTime() + 1e-6 < resumeTime_;
}

void ScriptPlayer::beforeFrame(ScriptHost& host) {
    ++frame_;
    if (finished_ || waiting_(host))
        return;
    auto const& commands = script_.getCommands();
    while (next_ < commands.size())
        if (!issue_(commands[next_++], host))
            return;
    finished_ = !waiting_(host);
}

bool ScriptPlayer::issue_(ScriptCommand const& command, ScriptHost& host) {
    using Kind = ScriptCommand::Kind;
    switch (command.kind) {
    case Kind::WaitFrames:
        resumeFrame_ = frame_ + command.amount;
        return command.amount == 0;
    case Kind::WaitSeconds:
        resumeTime_ = host.getTime() + command.seconds;
        return command.seconds == 0.0;
    case Kind::Screenshot:
        // The frame about to be drawn shows everything issued so far, and
        // nothing after: the batch ends here.
        if (!host.screenshotNextFrame(command.file))
            ++failedScreenshots_;
        return false;
    default:
        break;
    }
    // Input goes to the toolkit; without one it has nowhere to go.
    gui::GUI* gui = gui::GUI::get();
    if (!gui)
        return true;
    float const scale = host.getScale();
    switch (command.kind) {
    case Kind::Move:
        gui->mouseMove(toRaw(command.x, scale), toRaw(command.y, scale));
        return true;
    case Kind::Click:
        gui->mouseMove(toRaw(command.x, scale), toRaw(command.y, scale));
        gui->mouseDown(gui::MouseButtonLeft);
        gui->mouseUp(gui::MouseButtonLeft);
        return true;
    case Kind::Down:
        gui->mouseDown(command.button);
        return true;
    case Kind::Up:
        gui->mouseUp(command.button);
        return true;
    case Kind::Wheel:
        gui->mouseWheel(command.amount);
        return true;
    case Kind::Key:
        keyDown_(command.key, host);
        keyUp_(command.key, host);
        return true;
    case Kind::KeyDown:
        keyDown_(command.key, host);
        return true;
    case Kind::KeyUp:
        keyUp_(command.key, host);
        return true;
    case Kind::Type:
        type_(command.text);
        return true;
    default:
        return true;
    }
}

void ScriptPlayer::keyDown_(gui::KeyboardButton key, ScriptHost& host) {
    host.setKeyPressed(key, true);
    gui::GUI::get()->keyDown(key, 0);
}

void ScriptPlayer::keyUp_(gui::KeyboardButton key, ScriptHost& host) {
    host.setKeyPressed(key, false);
    gui::GUI::get()->keyUp(key, 0);
}

void ScriptPlayer::type_(std::wstring const& text) {
    for (wchar_t const c : text)
        gui::GUI::get()->onChar(keyOfCharacter(c), static_cast<int>(c));
}

}  // namespace gallery
