#pragma once

#include <string>
#include <vector>

#include "InputTypes.h"

namespace gallery {

// One line of an input script, parsed.
struct ScriptCommand {
    enum class Kind {
        Move,        // x, y
        Down,        // button
        Up,          // button
        Click,       // x, y: move, then press and release the left button
        Wheel,       // amount
        Key,         // key: down and up
        KeyDown,     // key
        KeyUp,       // key
        Type,        // text: one character message each
        WaitFrames,  // amount
        WaitSeconds, // seconds
        Screenshot,  // file
    };

    Kind kind = Kind::Move;
    int line = 0;
    int x = 0;
    int y = 0;
    int amount = 0;
    double seconds = 0.0;
    gui::MouseButton button = gui::MouseButtonLeft;
    gui::KeyboardButton key = gui::KeyNone;
    std::wstring text;
    std::string file;
};

// An input script: one command a line, '#' starts a comment. Coordinates are
// in UI units, so one script serves every UI scale.
//
//   move X Y            click X Y           wheel N
//   down [left|right|middle]                up [left|right|middle]
//   key NAME            keydown NAME        keyup NAME
//   type TEXT           wait N frames       wait N s
//   screenshot FILE
class Script {
public:
    // Parses `text`; on the first bad line answers false with a message that
    // names `sourceName` and the line ("script.txt:7: unknown command 'jump'").
    bool parse(std::string const& text, std::string const& sourceName, std::string& error);
    // Reads and parses a file; a file that cannot be read is an error too.
    bool load(std::string const& path, std::string& error);

    std::vector<ScriptCommand> const& getCommands() const { return commands_; }
    bool empty() const { return commands_.empty(); }

    // The help text of the format, for --help and the documentation.
    static char const* describe();

private:
    std::vector<ScriptCommand> commands_;
};

}  // namespace gallery
