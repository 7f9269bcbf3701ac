#pragma once

#include <cstddef>

#include "Export.h"
#include "orm/String.h"

namespace orm {

// Decodes UTF-8 into a wide string. Where wchar_t is 16 bits, characters
// beyond the basic plane become surrogate pairs. Malformed bytes become
// U+FFFD, so any input gives a string.
VUREL_EXPORT basic_string<wchar_t> iconv_utf8_to_wchar(char const* utf8, size_t length);
VUREL_EXPORT basic_string<wchar_t> iconv_utf8_to_wchar(std::string_view utf8);

// The reverse, for names and clipboard text handed back to the application.
VUREL_EXPORT basic_string<char> iconv_wchar_to_utf8(std::wstring_view text);

}  // namespace orm
