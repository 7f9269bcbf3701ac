#pragma once

#include <string>
#include <vector>

#include "orm/Log.h"

namespace vurel_test {

// Captures everything logged while it lives, instead of printing it.
class LogCapture {
public:
    struct Line {
        std::string tag;
        int level;
        std::string text;
    };

    LogCapture();
    ~LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    std::vector<Line> const& lines() const { return lines_; }
    // Whether a line under `tag` at `level` holds `text`.
    bool contains(std::string const& tag, int level, std::string const& text) const;
    bool containsText(std::string const& text) const;
    void clear() { lines_.clear(); }

private:
    std::vector<Line> lines_;
    OrmLogSink previous_;
};

}  // namespace vurel_test
