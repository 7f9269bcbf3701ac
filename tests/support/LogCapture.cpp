#include "LogCapture.h"

namespace vurel_test {

LogCapture::LogCapture() {
    previous_ = orm_set_log_sink([this](char const* tag, int level, char const* text) {
        lines_.push_back(Line{tag, level, text});
    });
}

LogCapture::~LogCapture() { orm_set_log_sink(std::move(previous_)); }

bool LogCapture::contains(std::string const& tag, int level, std::string const& text) const {
    for (auto const& l : lines_)
        if (l.tag == tag && l.level == level && l.text.find(text) != std::string::npos)
            return true;
    return false;
}

bool LogCapture::containsText(std::string const& text) const {
    for (auto const& l : lines_)
        if (l.text.find(text) != std::string::npos)
            return true;
    return false;
}

}  // namespace vurel_test
