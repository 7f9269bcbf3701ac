#include "TextUtil.h"

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cstdint>
#include <limits>

#include "Application.h"
#include "GUI.h"
#include "orm/Log.h"

namespace textutil {

namespace {

using WString = orm::basic_string<wchar_t>;

int clampToInt(int64_t value) {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

// The string wrapText builds its lines in. One per thread is kept between
// calls so that laying out the same text again allocates nothing; a call
// made from inside an output callback gets a buffer of its own.
class LineBuffer {
public:
    LineBuffer() : shared_(!sharedInUse()), text_(shared_ ? sharedText() : localText_) {
        if (shared_)
            sharedInUse() = true;
    }
    ~LineBuffer() {
        if (shared_)
            sharedInUse() = false;
    }
    LineBuffer(LineBuffer const&) = delete;
    LineBuffer& operator=(LineBuffer const&) = delete;

    WString const& assign(wchar_t const* text, int length) {
        text_.assign(text, static_cast<size_t>(length));
        return text_;
    }

private:
    static bool& sharedInUse() {
        thread_local bool inUse = false;
        return inUse;
    }
    static WString& sharedText() {
        thread_local WString text;
        return text;
    }

    bool shared_;
    WString localText_;
    WString& text_;
};

// The line wrapText is filling: a range of the text, since its words are
// consecutive.
struct PendingLine {
    int start = 0;
    int length = 0;
    int64_t width = 0;
};

// The word starting at `start`: up to and including the next separator, or
// to the end of the text. `last` tells that no separator ended it.
int findWordEnd(wchar_t const* text, int length, int start, bool& last) {
    int i = start;
    while (i < length && !isSymbolWordSeparator(text[i]))
        ++i;
    last = i == length;
    return last ? length : i + 1;
}

// Plain text of the mark-up: appended to the last block, each line end
// closing it and starting the next with the same attributes.
void addPlainText(WString const& text, size_t begin, size_t end, TextBlockList& out) {
    while (begin < end) {
        size_t const eol = std::min(text.find(L'\n', begin), end);
        out.back().text.append(text, begin, eol - begin);
        if (eol == end)
            return;
        out.back().newLine = true;
        out.push_back(TextBlock{{}, out.back().attributes, false});
        begin = eol + 1;
    }
}

// Name and value of a tag body: "name=value", or a bare name. A leading "="
// is part of the name.
void splitTagBody(std::basic_string_view<wchar_t> body, WString& name, WString& value) {
    size_t const eq = body.find(L'=');
    if (eq != std::basic_string_view<wchar_t>::npos && eq > 0) {
        name.assign(body.substr(0, eq));
        value.assign(body.substr(eq + 1));
    } else {
        name.assign(body);
        value.clear();
    }
}

std::atomic<bool> g_getTokensRunning{false};

}  // namespace

void wrapText(wchar_t const* text, int length, MeasureFunc measure, int width, LineOutputFunc output) {
    if (!text || length < 0)
        length = 0;
    LineBuffer buffer;
    PendingLine line;
    auto emit = [&](int start, int count, int64_t lineWidth) {
        output(buffer.assign(text + start, count), clampToInt(lineWidth));
    };

    int start = 0;
    bool last = false;
    while (!last) {
        int const end = findWordEnd(text, length, start, last);
        int const wordLength = end - start;
        int const w = wordLength > 0 ? measure(text + start, wordLength) : 0;

        if (line.length > 0 && line.width + w > width) {
            // A line that exactly fills the width keeps the word; this one overflows.
            emit(line.start, line.length, line.width);
            line = PendingLine{};
        }
        if (line.length == 0) {
            if (w < width) {
                line = PendingLine{start, wordLength, w};
            } else {
                // Too wide even alone: the word is its own line, and later
                // lines may be as wide as it is.
                emit(start, wordLength, wordLength > 0 ? w : 0);
                width = w;
            }
        } else {
            // The width stays a sum of word widths: kerning across words is
            // not measured.
            line.length += wordLength;
            line.width += w;
        }
        start = end;
    }
    if (line.length > 0)
        emit(line.start, line.length, line.width);
}

bool isSymbolWordSeparator(wchar_t c) {
    switch (c) {
    case L'\n':
    case L' ':
    case L'!':
    case L'%':
    case L'\'':
    case L'*':
    case L'+':
    case L',':
    case L'-':
    case L'.':
    case L'/':
    case L':':
    case L';':
    case L'=':
    case L'?':
    case L'\\':
    case L'|':
    case wchar_t(0x2013):
        return true;
    default:
        return c >= wchar_t(0x3000) && c <= wchar_t(0xFCFE);
    }
}

bool isEOL(wchar_t c) { return c == L'\n'; }

bool getTextHasTabs(std::basic_string_view<wchar_t> text) { return text.find(L'\t') != text.npos; }

WString replaceTabsBySpaces(WString text) {
    constexpr int bufferSize = 128;
    gui::GUI const* root = gui::GUI::get();
    int const count = std::clamp(root ? root->getTabSpacesCount() : 4, 0, bufferSize - 1);
    wchar_t spaces[bufferSize];
    std::fill_n(spaces, count, L' ');

    for (size_t pos = text.find(L'\t'); pos != WString::npos; pos = text.find(L'\t', pos + count))
        text.replace(pos, 1, spaces, static_cast<size_t>(count));
    return text;
}

void cleanupText(WString& text, wchar_t c) { std::erase(text, c); }

void getTokens(std::basic_string_view<wchar_t> text, bool (*isSeparator)(wchar_t), bool keepSeparators,
               bool addEmptyLast, orm::vector<WString>& out) {
    bool const nested = g_getTokensRunning.exchange(true);
    if (nested)
        orm_vlogf("VUREL", 64, "Function textutil::getTokens() called from itself!");

    // Tokens are ranges of the text; each is copied into `out` once.
    size_t tokenStart = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (!isSeparator || !isSeparator(text[i]))
            continue;
        out.emplace_back(text.substr(tokenStart, i - tokenStart + (keepSeparators ? 1 : 0)));
        tokenStart = i + 1;
    }
    if (tokenStart < text.size() || addEmptyLast)
        out.emplace_back(text.substr(tokenStart));

    if (!nested)
        g_getTokensRunning = false;
}

void parseText(WString const& text, TagSet const& tags, TextBlockList& out) {
    out.emplace_back();
    WString name, value;
    size_t pos = 0;
    while (pos < text.size()) {
        size_t const open = text.find(L'[', pos);
        if (open == WString::npos)
            break;
        addPlainText(text, pos, open, out);
        size_t const close = text.find(L']', open + 1);
        if (close == WString::npos) {
            pos = open;
            break;
        }
        std::basic_string_view<wchar_t> const body(text.data() + open + 1, close - open - 1);
        if (!body.empty())
            splitTagBody(body, name, value);
        bool const closing = !body.empty() && name.starts_with(L'/');
        if (closing)
            name.erase(0, 1);
        if (body.empty() || !tags.contains(name)) {
            // Not a tag: the bracket is text, and scanning goes on right behind it.
            addPlainText(text, open, open + 1, out);
            pos = open + 1;
            continue;
        }
        if (!out.back().text.empty())
            out.push_back(TextBlock{{}, out.back().attributes, false});
        if (closing)
            out.back().attributes.erase(name);
        else
            out.back().attributes.insert_or_assign(name, value);
        pos = close + 1;
    }
    addPlainText(text, pos, text.size(), out);
}

void copyTextToClipboard(WString const& text) {
    if (gui::Application* app = gui::Application::get())
        app->setClipboardText(text);
}

WString getTextFromClipboard() {
    gui::Application const* app = gui::Application::get();
    if (!app)
        return {};
    WString text = app->getClipboardText();
    for (wchar_t& c : text) {
        if (c == wchar_t(0x00AB) || c == wchar_t(0x00BB))
            c = L'"';
        else if (c == wchar_t(0x00B4))
            c = L'\'';
    }
    return text;
}

wchar_t getDecimalPoint() {
    std::lconv const* conv = std::localeconv();
    if (!conv || !conv->decimal_point || conv->decimal_point[0] == '\0')
        return L'.';
    return static_cast<wchar_t>(static_cast<unsigned char>(conv->decimal_point[0]));
}

}  // namespace textutil
