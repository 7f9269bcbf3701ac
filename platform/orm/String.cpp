#include "orm/String.h"

#include <cerrno>
#include <cstdio>
#include <cwchar>

namespace orm {

namespace {

int formatInto(char* buffer, size_t size, char const* fmt, va_list args) { return std::vsnprintf(buffer, size, fmt, args); }
int formatInto(wchar_t* buffer, size_t size, wchar_t const* fmt, va_list args) { return std::vswprintf(buffer, size, fmt, args); }

// Whether a negative answer of formatInto may mean "buffer too small". vsnprintf
// reports the needed length instead, so for it a negative answer is always an
// error (a character the locale cannot encode, a bad format). vswprintf answers
// -1 for both and tells them apart only through errno.
bool mayBeTooSmall(char, int) { return false; }
bool mayBeTooSmall(wchar_t, int error) { return error == 0; }

}  // namespace

template <class C>
basic_string<C> basic_string<C>::vformat(C const* fmt, va_list args) {
    basic_string out;
    if (!fmt)
        return out;
    // vswprintf does not report the needed length, so both widths grow a
    // buffer until the result fits.
    size_t size = 128;
    for (;;) {
        out.resize(size);
        va_list copy;
        va_copy(copy, args);
        errno = 0;
        int const n = formatInto(out.data(), size, fmt, copy);
        int const error = errno;
        va_end(copy);
        if (n >= 0 && static_cast<size_t>(n) < size) {
            out.resize(static_cast<size_t>(n));
            return out;
        }
        // A broken format or argument: give up rather than grow the buffer for nothing.
        if ((n < 0 && !mayBeTooSmall(C{}, error)) || size > (1u << 24)) {
            out.clear();
            return out;
        }
        size = n >= 0 ? static_cast<size_t>(n) + 1 : size * 2;
    }
}

template <class C>
basic_string<C> basic_string<C>::format(C const* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    basic_string out = vformat(fmt, args);
    va_end(args);
    return out;
}

template class basic_string<char>;
template class basic_string<wchar_t>;

}  // namespace orm
