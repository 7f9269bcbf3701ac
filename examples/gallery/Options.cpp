#include "Options.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "Script.h"

namespace gallery {

namespace {

constexpr float kMinScale = 0.5f;
constexpr float kMaxScale = 4.0f;

}  // namespace

Options::Result Options::parse(int argc, char const* const* argv, Options& out, std::string& message) {
    char const* program = argc > 0 ? argv[0] : "gallery";
    for (int i = 1; i < argc; ++i) {
        std::string const arg = argv[i];
        if (arg == "-h" || arg == "--help") {
            message = helpText(program);
            return Result::Help;
        }
        if (arg == "--window") {
            out.window = true;
            continue;
        }
        bool const takesValue = arg == "--script" || arg == "--screenshot" || arg == "--scale" || arg == "--skin";
        if (!takesValue) {
            message = "unknown option '" + arg + "' (see --help)";
            return Result::Error;
        }
        if (i + 1 >= argc || argv[i + 1][0] == '\0') {
            message = "option " + arg + " needs a value (see --help)";
            return Result::Error;
        }
        std::string const value = argv[++i];
        if (arg == "--script") {
            out.script = value;
        } else if (arg == "--screenshot") {
            out.screenshot = value;
        } else if (arg == "--skin") {
            out.skin = value;
        } else {
            char* end = nullptr;
            float const scale = std::strtof(value.c_str(), &end);
            if (*end != '\0' || !std::isfinite(scale) || scale < kMinScale || scale > kMaxScale) {
                message = "bad --scale '" + value + "': use a number from 0.5 to 4";
                return Result::Error;
            }
            out.scale = scale;
        }
    }
    if (!out.window && out.screenshot.empty())
        out.screenshot = "gallery.png";
    return Result::Run;
}

std::string Options::helpText(char const* program) {
    return std::string("Usage: ") + program +
           " [--window] [--script FILE] [--screenshot FILE] [--scale S] [--skin FILE]\n"
           "\n"
           "Shows every widget of VUREL with the default skin, built from Lua window resources.\n"
           "\n"
           "  (no option)        render headless and write gallery.png in the current folder\n"
           "  --window           open an SDL2 window where everything can be clicked and typed\n"
           "  --script FILE      replay the input in FILE (format below)\n"
           "  --screenshot FILE  write a PNG at the end: after the script headless, when the window closes\n"
           "  --scale S          UI scale, 0.5 to 4 (the window grows with it); default 1\n"
           "  --skin FILE        another skin script instead of examples/gallery/skin/default.lua\n"
           "  -h, --help         this text\n"
           "\n" +
           Script::describe();
}

}  // namespace gallery
