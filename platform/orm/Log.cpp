#include "orm/Log.h"

#include <cstdarg>
#include <cstdio>

namespace {

OrmLogSink& sink() {
    static OrmLogSink s;
    return s;
}

}  // namespace

void orm_vlogf(char const* tag, int level, char const* format, ...) {
    // A fixed buffer: logging from a hot path must not allocate.
    char text[1024];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format ? format : "", args);
    va_end(args);
    if (sink())
        sink()(tag ? tag : "", level, text);
    else
        std::fprintf(stderr, "[%s:%d] %s\n", tag ? tag : "", level, text);
}

OrmLogSink orm_set_log_sink(OrmLogSink s) {
    OrmLogSink previous = std::move(sink());
    sink() = std::move(s);
    return previous;
}
