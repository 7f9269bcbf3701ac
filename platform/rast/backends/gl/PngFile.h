#pragma once

#include <cstdint>
#include <vector>

#include "Export.h"

// 8-bit RGBA pictures to and from PNG files, rows top first, colour not
// premultiplied. Failures are logged under "VUREL" at level 16 and answer false.
VUREL_EXPORT bool rastWritePng(char const* path, uint8_t const* rgba, int width, int height);
VUREL_EXPORT bool rastReadPng(char const* path, std::vector<uint8_t>& rgba, int& width, int& height);
