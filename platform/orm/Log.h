#pragma once

#include <functional>

#include "Export.h"

// Writes one formatted line under `tag` at `level`. The toolkit logs under
// "VUREL" with levels 8 (invalid data), 16 (warnings) and 64 (skin script
// errors, statistics). By default lines go to stderr; an installed sink gets
// them instead.
VUREL_EXPORT void orm_vlogf(char const* tag, int level, char const* format, ...)
    __attribute__((format(printf, 3, 4)));

using OrmLogSink = std::function<void(char const* tag, int level, char const* text)>;

// Installs a sink (an empty one restores stderr) and answers the previous one.
VUREL_EXPORT OrmLogSink orm_set_log_sink(OrmLogSink sink);
