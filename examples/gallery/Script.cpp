#include "Script.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "KeyboardButtons.h"
#include "orm/Utf8.h"

namespace gallery {

namespace {

// Limits that keep a typing mistake from running for hours.
constexpr int kMaxWaitFrames = 100000;
constexpr double kMaxWaitSeconds = 3600.0;

std::string trim(std::string const& s) {
    size_t const begin = s.find_first_not_of(" \t\r");
    if (begin == std::string::npos)
        return {};
    size_t const end = s.find_last_not_of(" \t\r");
    return s.substr(begin, end - begin + 1);
}

std::vector<std::string> split(std::string const& s) {
    std::vector<std::string> words;
    std::istringstream in(s);
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

// Parses one line; a non-empty `error` reports what is wrong with it.
class LineParser {
public:
    LineParser(std::string const& line, ScriptCommand& out, std::string& error)
        : line_(trim(line)), words_(split(line_)), out_(out), error_(error) {}

    void parse() {
        std::string const& name = words_[0];
        if (name == "move")
            point(ScriptCommand::Kind::Move);
        else if (name == "click")
            point(ScriptCommand::Kind::Click);
        else if (name == "down")
            button(ScriptCommand::Kind::Down);
        else if (name == "up")
            button(ScriptCommand::Kind::Up);
        else if (name == "wheel")
            wheel();
        else if (name == "key")
            key(ScriptCommand::Kind::Key);
        else if (name == "keydown")
            key(ScriptCommand::Kind::KeyDown);
        else if (name == "keyup")
            key(ScriptCommand::Kind::KeyUp);
        else if (name == "type")
            type();
        else if (name == "wait")
            wait();
        else if (name == "screenshot")
            screenshot();
        else
            error_ = "unknown command '" + name + "'";
    }

private:
    // Everything after the command word, as written.
    std::string rest() const {
        size_t const space = line_.find_first_of(" \t");
        return space == std::string::npos ? std::string() : trim(line_.substr(space));
    }

    bool argumentCount(size_t count, char const* usage) {
        if (words_.size() == count + 1)
            return true;
        error_ = std::string(words_.size() <= count ? "missing arguments" : "too many arguments") + " for '" +
                 words_[0] + "': use '" + usage + "'";
        return false;
    }

    bool integer(std::string const& word, int& out) {
        char* end = nullptr;
        errno = 0;
        long const value = std::strtol(word.c_str(), &end, 10);
        if (word.empty() || *end != '\0' || errno != 0 || value < -1000000 || value > 1000000) {
            error_ = "bad number '" + word + "'";
            return false;
        }
        out = static_cast<int>(value);
        return true;
    }

    void point(ScriptCommand::Kind kind) {
        out_.kind = kind;
        if (argumentCount(2, kind == ScriptCommand::Kind::Move ? "move X Y" : "click X Y") &&
            integer(words_[1], out_.x))
            integer(words_[2], out_.y);
    }

    void button(ScriptCommand::Kind kind) {
        out_.kind = kind;
        if (words_.size() == 1)
            return;
        char const* usage = kind == ScriptCommand::Kind::Down ? "down [left|right|middle]" : "up [left|right|middle]";
        if (!argumentCount(1, usage))
            return;
        std::string const& name = words_[1];
        if (name == "left")
            out_.button = gui::MouseButtonLeft;
        else if (name == "right")
            out_.button = gui::MouseButtonRight;
        else if (name == "middle")
            out_.button = gui::MouseButtonMiddle;
        else
            error_ = "unknown mouse button '" + name + "': use left, right or middle";
    }

    void wheel() {
        out_.kind = ScriptCommand::Kind::Wheel;
        if (argumentCount(1, "wheel N"))
            integer(words_[1], out_.amount);
    }

    // Key names may hold spaces ("page up"), so the name is the rest of the line.
    void key(ScriptCommand::Kind kind) {
        out_.kind = kind;
        std::string const name = rest();
        if (name.empty()) {
            error_ = "missing key name for '" + words_[0] + "'";
            return;
        }
        out_.key = gui::getKeyboardButtonByName(name);
        if (out_.key == gui::KeyNone)
            error_ = "unknown key '" + name + "'";
    }

    void type() {
        out_.kind = ScriptCommand::Kind::Type;
        std::string const text = rest();
        if (text.empty()) {
            error_ = "missing text for 'type'";
            return;
        }
        out_.text = orm::iconv_utf8_to_wchar(text);
    }

    void wait() {
        if (!argumentCount(2, "wait N frames' or 'wait N s"))
            return;
        std::string const& unit = words_[2];
        if (unit == "frames" || unit == "frame") {
            out_.kind = ScriptCommand::Kind::WaitFrames;
            if (integer(words_[1], out_.amount) && (out_.amount < 0 || out_.amount > kMaxWaitFrames))
                error_ = "wait of " + words_[1] + " frames is out of range (0 to " + std::to_string(kMaxWaitFrames) +
                         ")";
            return;
        }
        if (unit == "s") {
            out_.kind = ScriptCommand::Kind::WaitSeconds;
            char* end = nullptr;
            out_.seconds = std::strtod(words_[1].c_str(), &end);
            if (*end != '\0' || !std::isfinite(out_.seconds))
                error_ = "bad number '" + words_[1] + "'";
            else if (out_.seconds < 0.0 || out_.seconds > kMaxWaitSeconds)
                error_ = "wait of " + words_[1] + " s is out of range (0 to 3600)";
            return;
        }
        error_ = "unknown unit '" + unit + "' for 'wait': use 'frames' or 's'";
    }

    void screenshot() {
        out_.kind = ScriptCommand::Kind::Screenshot;
        out_.file = rest();
        if (out_.file.empty())
            error_ = "missing file name for 'screenshot'";
    }

    std::string line_;
    std::vector<std::string> words_;
    ScriptCommand& out_;
    std::string& error_;
};

}  // namespace

bool Script::parse(std::string const& text, std::string const& sourceName, std::string& error) {
    // Key names come from the toolkit's table, which may not be filled yet.
    gui::registerKeyboardButtonsNames();
    commands_.clear();
    std::istringstream in(text);
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        std::string const content = trim(line);
        if (content.empty() || content[0] == '#')
            continue;
        ScriptCommand command;
        command.line = number;
        std::string problem;
        LineParser(content, command, problem).parse();
        if (!problem.empty()) {
            error = sourceName + ":" + std::to_string(number) + ": " + problem;
            commands_.clear();
            return false;
        }
        commands_.push_back(std::move(command));
    }
    return true;
}

bool Script::load(std::string const& path, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = path + ": cannot read the script";
        return false;
    }
    std::ostringstream text;
    text << file.rdbuf();
    return parse(text.str(), path, error);
}

char const* Script::describe() {
    return "Script format: one command a line; blank lines and lines starting with '#' are skipped.\n"
           "Coordinates are UI units (window pixels divided by the UI scale).\n"
           "  move X Y                  move the mouse\n"
           "  down [left|right|middle]  press a mouse button (left when omitted)\n"
           "  up [left|right|middle]    release a mouse button\n"
           "  click X Y                 move, press and release the left button\n"
           "  wheel N                   turn the wheel by N steps (negative: towards the user)\n"
           "  key NAME                  press and release a key: a, return, escape, tab, f1, page up...\n"
           "  keydown NAME              press a key (modifiers such as 'left shift' stay held)\n"
           "  keyup NAME                release a key\n"
           "  type TEXT                 send the characters of TEXT (UTF-8), the rest of the line\n"
           "  wait N frames             run N frames before the next command\n"
           "  wait N s                  wait N seconds (headless: 60 frames a second)\n"
           "  screenshot FILE           write the next frame drawn as a PNG file\n";
}

}  // namespace gallery
