#pragma once

#include <string>

namespace gallery {

// The command line of the gallery.
struct Options {
    bool window = false;            // --window: an SDL2 window instead of headless
    std::string script;             // --script FILE: input to replay
    std::string screenshot;         // --screenshot FILE; headless runs default to gallery.png
    float scale = 1.0f;             // --scale S: the UI scale
    std::string skin;               // --skin FILE: another skin script than the default one

    enum class Result { Run, Help, Error };

    // Reads argv; for Help the message is the help text, for Error the reason.
    static Result parse(int argc, char const* const* argv, Options& out, std::string& message);
    static std::string helpText(char const* program);
};

}  // namespace gallery
