#include "orm/Utf8.h"

namespace orm {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendCodePoint(basic_string<wchar_t>& out, char32_t cp) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(cp));
}

// Reads one code point at `i`, advancing it; answers kReplacement for a bad sequence.
char32_t decodeOne(unsigned char const* s, size_t length, size_t& i) {
    unsigned char const lead = s[i++];
    if (lead < 0x80)
        return lead;
    int extra = 0;
    char32_t cp = 0;
    char32_t minimum = 0;
    if ((lead & 0xE0) == 0xC0) { extra = 1; cp = lead & 0x1F; minimum = 0x80; }
    else if ((lead & 0xF0) == 0xE0) { extra = 2; cp = lead & 0x0F; minimum = 0x800; }
    else if ((lead & 0xF8) == 0xF0) { extra = 3; cp = lead & 0x07; minimum = 0x10000; }
    else return kReplacement;
    for (int k = 0; k < extra; ++k) {
        if (i >= length || (s[i] & 0xC0) != 0x80)
            return kReplacement;
        cp = (cp << 6) | (s[i++] & 0x3F);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return kReplacement;
    return cp;
}

void appendUtf8(basic_string<char>& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

}  // namespace

basic_string<wchar_t> iconv_utf8_to_wchar(char const* utf8, size_t length) {
    basic_string<wchar_t> out;
    if (!utf8)
        return out;
    auto const* s = reinterpret_cast<unsigned char const*>(utf8);
    out.reserve(length);
    for (size_t i = 0; i < length;)
        appendCodePoint(out, decodeOne(s, length, i));
    return out;
}

basic_string<wchar_t> iconv_utf8_to_wchar(std::string_view utf8) { return iconv_utf8_to_wchar(utf8.data(), utf8.size()); }

basic_string<char> iconv_wchar_to_utf8(std::wstring_view text) {
    basic_string<char> out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t cp = static_cast<char32_t>(text[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < text.size()) {
                char32_t const low = static_cast<char32_t>(text[i + 1]);
                if (low >= 0xDC00 && low < 0xE000) {
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            cp = kReplacement;
        appendUtf8(out, cp);
    }
    return out;
}

}  // namespace orm
