#pragma once

#include <functional>
#include <list>
#include <set>
#include <string_view>
#include <unordered_map>

#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"

// Free helpers on wide text: word wrapping, tabs, tokens, the mark-up parser,
// the clipboard and small character tests. Nothing here depends on the width
// of wchar_t.
namespace textutil {

// One run of mark-up text with the tags in force over it. A block never holds
// a line end: `newLine` says that a line break follows it.
struct VUREL_EXPORT TextBlock {
    orm::basic_string<wchar_t> text;
    std::unordered_map<orm::basic_string<wchar_t>, orm::basic_string<wchar_t>> attributes;
    bool newLine = false;
};

// The tag names parseText knows, and the blocks it produces.
using TagSet = std::set<orm::basic_string<wchar_t>, std::less<orm::basic_string<wchar_t>>,
                        orm::allocator<orm::basic_string<wchar_t>>>;
using TextBlockList = std::list<TextBlock, orm::allocator<TextBlock>>;

using MeasureFunc = std::function<int(wchar_t const*, int)>;
using LineOutputFunc = std::function<void(orm::basic_string<wchar_t> const&, int)>;

// Breaks `text` into lines no wider than `width` where it can, calling
// `output` with each line and its width. A word is a run of non-separators
// with the one separator after it, so trailing spaces stay in their line. A
// word wider than `width` becomes a line alone and raises `width` to its own
// width for the rest of the call.
VUREL_EXPORT void wrapText(wchar_t const* text, int length, MeasureFunc measure, int width,
                           LineOutputFunc output);

// True where a line may break: space, line end, common punctuation, the en
// dash, and every character from U+3000 to U+FCFE (scripts without spaces).
VUREL_EXPORT bool isSymbolWordSeparator(wchar_t c);
// True for U+000A only.
VUREL_EXPORT bool isEOL(wchar_t c);

VUREL_EXPORT bool getTextHasTabs(std::basic_string_view<wchar_t> text);
// Each tab becomes gui::GUI's tab-spaces count of spaces.
VUREL_EXPORT orm::basic_string<wchar_t> replaceTabsBySpaces(orm::basic_string<wchar_t> text);
// Erases every `c` in place.
VUREL_EXPORT void cleanupText(orm::basic_string<wchar_t>& text, wchar_t c);

// Appends the tokens of `text` to `out`. Every separator ends a token, and
// belongs to it when `keepSeparators` is true; an empty last token is
// appended only with `addEmptyLast`. Not re-entrant: a nested call is logged.
VUREL_EXPORT void getTokens(std::basic_string_view<wchar_t> text, bool (*isSeparator)(wchar_t), bool keepSeparators,
                            bool addEmptyLast, orm::vector<orm::basic_string<wchar_t>>& out);

// Splits mark-up ("plain [name=value]tagged[/name] plain") into blocks.
// Only names in `tags` are tags; anything else, and unmatched brackets, stay
// text. Tags do not nest: a closing tag removes the attribute whatever was
// opened before.
VUREL_EXPORT void parseText(orm::basic_string<wchar_t> const& text, TagSet const& tags, TextBlockList& out);

// Through gui::Application; without an application nothing happens and the
// clipboard reads as empty.
VUREL_EXPORT void copyTextToClipboard(orm::basic_string<wchar_t> const& text);
// Typographic quotes from other programs become plain ones.
VUREL_EXPORT orm::basic_string<wchar_t> getTextFromClipboard();

// The C locale's decimal point, "." when it has none.
VUREL_EXPORT wchar_t getDecimalPoint();

}  // namespace textutil
