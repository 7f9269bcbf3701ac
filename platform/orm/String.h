#pragma once

#include <cstdarg>
#include <functional>
#include <string>
#include <string_view>

#include "Export.h"

namespace orm {

// The core library's string: a std::basic_string with printf-style `format`.
// Narrow strings hold names and file paths, wide strings hold text shown to
// users. Nothing may depend on the width of wchar_t.
template <class C>
class basic_string : public std::basic_string<C> {
public:
    using Base = std::basic_string<C>;
    using Base::Base;
    basic_string() = default;
    basic_string(Base const& s) : Base(s) {}
    basic_string(Base&& s) noexcept : Base(std::move(s)) {}

    // printf-style formatting into a new string.
    static basic_string format(C const* fmt, ...);
    static basic_string vformat(C const* fmt, va_list args);
};

using string = basic_string<char>;
using wstring = basic_string<wchar_t>;

extern template class VUREL_EXPORT basic_string<char>;
extern template class VUREL_EXPORT basic_string<wchar_t>;

}  // namespace orm

template <class C>
struct std::hash<orm::basic_string<C>> {
    size_t operator()(orm::basic_string<C> const& s) const noexcept { return std::hash<std::basic_string_view<C>>()(s); }
};
