#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "GuiFixture.h"
#include "LogCapture.h"
#include "TestApplication.h"
#include "TextUtil.h"

using WString = orm::basic_string<wchar_t>;

namespace {

struct Line {
    std::wstring text;
    int width;
    bool operator==(Line const&) const = default;
};

void PrintTo(Line const& line, std::ostream* os) {
    *os << '"' << std::string(line.text.begin(), line.text.end()) << "\":" << line.width;
}

// Wraps with one pixel per character unless told otherwise.
std::vector<Line> wrap(std::wstring const& text, int width,
                       textutil::MeasureFunc measure = [](wchar_t const*, int n) { return n; }) {
    std::vector<Line> lines;
    textutil::wrapText(text.data(), static_cast<int>(text.size()), std::move(measure), width,
                       [&lines](WString const& line, int w) { lines.push_back({line, w}); });
    return lines;
}

bool isComma(wchar_t c) { return c == L','; }

std::vector<WString> tokens(std::wstring_view text, bool keepSeparators, bool addEmptyLast) {
    orm::vector<WString> out;
    textutil::getTokens(text, isComma, keepSeparators, addEmptyLast, out);
    return {out.begin(), out.end()};
}

struct Block {
    std::wstring text;
    std::map<std::wstring, std::wstring> attributes;
    bool newLine = false;
    bool operator==(Block const&) const = default;
};

std::vector<Block> parse(WString const& text, textutil::TagSet const& tags = {L"b", L"color"}) {
    textutil::TextBlockList blocks;
    textutil::parseText(text, tags, blocks);
    std::vector<Block> result;
    for (textutil::TextBlock const& block : blocks) {
        Block b{block.text, {}, block.newLine};
        for (auto const& [name, value] : block.attributes)
            b.attributes[name] = value;
        result.push_back(b);
    }
    return result;
}

}  // namespace

TEST(TextUtilWrapTest, BreaksAfterSeparatorsAndKeepsWideWordsWhole) {
    // A word exactly as wide as the width is too wide to start a line.
    EXPECT_EQ(wrap(L"aaa bbb", 4), (std::vector<Line>{{L"aaa ", 4}, {L"bbb", 3}}));
    EXPECT_EQ(wrap(L"aaa bbb", 3), (std::vector<Line>{{L"aaa ", 4}, {L"bbb", 3}}));
    // A line may fill the width exactly once it has a word.
    EXPECT_EQ(wrap(L"ab cd ef", 6), (std::vector<Line>{{L"ab cd ", 6}, {L"ef", 2}}));
    // After an over-wide word the width grows to that word's.
    EXPECT_EQ(wrap(L"aaaaaa b cc dd", 4), (std::vector<Line>{{L"aaaaaa ", 7}, {L"b cc dd", 7}}));
    // A separator after a separator is a word of its own; a trailing one adds no line.
    EXPECT_EQ(wrap(L"a  b ", 3), (std::vector<Line>{{L"a  ", 3}, {L"b ", 2}}));
    // Nothing fits a width of 0 or less; an empty text then still gives its line.
    EXPECT_EQ(wrap(L"abc", -1), (std::vector<Line>{{L"abc", 3}}));
    EXPECT_EQ(wrap(L"", 0), (std::vector<Line>{{L"", 0}}));
    // Punctuation breaks too, and lines of scripts without spaces break anywhere.
    EXPECT_EQ(wrap(L"x-y", 2), (std::vector<Line>{{L"x-", 2}, {L"y", 1}}));
    EXPECT_EQ(wrap(L"\x4E00\x4E8C\x4E09", 2), (std::vector<Line>{{L"\x4E00\x4E8C", 2}, {L"\x4E09", 1}}));
}

TEST(TextUtilWrapTest, LineWidthIsTheSumOfWordWidths) {
    std::vector<std::wstring> measured;
    auto perWord = [&measured](wchar_t const* word, int n) {
        measured.emplace_back(word, n);
        return 10;
    };
    EXPECT_EQ(wrap(L"a bb ccc", 25, perWord), (std::vector<Line>{{L"a bb ", 20}, {L"ccc", 10}}));
    EXPECT_EQ(measured, (std::vector<std::wstring>{L"a ", L"bb ", L"ccc"}));
}

TEST(TextUtilWrapTest, OutputMayWrapAgain) {
    // A nested call must not overwrite the line the outer call handed out.
    std::vector<Line> outer, inner;
    textutil::wrapText(L"ab cd", 5, [](wchar_t const*, int n) { return n; }, 3, [&](WString const& line, int w) {
        textutil::wrapText(L"xyz", 3, [](wchar_t const*, int n) { return n; }, 10,
                           [&inner](WString const& l, int iw) { inner.push_back({l, iw}); });
        outer.push_back({line, w});
    });
    EXPECT_EQ(outer, (std::vector<Line>{{L"ab ", 3}, {L"cd", 2}}));
    EXPECT_EQ(inner.size(), 2u);
}

TEST(TextUtilCharTest, Separators) {
    for (wchar_t c : std::wstring(L"\n '-.\\|\x2013\x3000\xFCFE"))
        EXPECT_TRUE(textutil::isSymbolWordSeparator(c)) << int(c);
    for (wchar_t c : std::wstring(L"a0\t()_\x2014\x2FFF\xFCFF"))
        EXPECT_FALSE(textutil::isSymbolWordSeparator(c)) << int(c);
    EXPECT_TRUE(textutil::isEOL(L'\n'));
    EXPECT_FALSE(textutil::isEOL(L'\r'));
}

TEST(TextUtilCharTest, TabsCleanupAndDecimalPoint) {
    EXPECT_TRUE(textutil::getTextHasTabs(L"a\tb"));
    EXPECT_FALSE(textutil::getTextHasTabs(L"a    b"));

    WString text = L"a\r\nb\r";
    textutil::cleanupText(text, L'\r');
    EXPECT_EQ(text, L"a\nb");
    textutil::cleanupText(text, L'x');
    EXPECT_EQ(text, L"a\nb");

    // Tests run in the C locale.
    EXPECT_EQ(textutil::getDecimalPoint(), L'.');
}

TEST(TextUtilTokensTest, SplitsAtSeparators) {
    EXPECT_EQ(tokens(L"a,b,", false, false), (std::vector<WString>{L"a", L"b"}));
    EXPECT_EQ(tokens(L"a,b,", false, true), (std::vector<WString>{L"a", L"b", L""}));
    EXPECT_EQ(tokens(L"a,b,", true, false), (std::vector<WString>{L"a,", L"b,"}));
    EXPECT_EQ(tokens(L"a,,b", false, false), (std::vector<WString>{L"a", L"", L"b"}));
    EXPECT_EQ(tokens(L"a,,b", true, false), (std::vector<WString>{L"a,", L",", L"b"}));
    EXPECT_TRUE(tokens(L"", false, false).empty());
    EXPECT_EQ(tokens(L"", false, true), (std::vector<WString>{L""}));

    // Tokens are appended to what the list holds.
    orm::vector<WString> out{L"old"};
    textutil::getTokens(L"x", isComma, false, false, out);
    EXPECT_EQ(out, (orm::vector<WString>{L"old", L"x"}));
}

namespace {

bool separatorThatTokenises(wchar_t c) {
    orm::vector<WString> ignored;
    textutil::getTokens(L"q", isComma, false, false, ignored);
    return c == L',';
}

}  // namespace

TEST(TextUtilTokensTest, NestedCallIsReportedAndStillWorks) {
    vurel_test::LogCapture log;
    orm::vector<WString> nested;
    textutil::getTokens(L"a,b", separatorThatTokenises, false, false, nested);
    EXPECT_EQ(nested, (orm::vector<WString>{L"a", L"b"}));
    EXPECT_TRUE(log.contains("VUREL", 64, "Function textutil::getTokens() called from itself!"));

    // The guard is clear again afterwards.
    log.clear();
    orm::vector<WString> out;
    textutil::getTokens(L"a", isComma, false, false, out);
    EXPECT_TRUE(log.lines().empty());
}

TEST(TextUtilParseTest, TagsSetAndClearAttributes) {
    using Attrs = std::map<std::wstring, std::wstring>;
    EXPECT_EQ(parse(L"[color=ff]x[/color]y"), (std::vector<Block>{{L"x", Attrs{{L"color", L"ff"}}}, {L"y", {}}}));
    // A tag in front of the first text does not leave an empty block behind.
    EXPECT_EQ(parse(L"a[b]c"), (std::vector<Block>{{L"a", {}}, {L"c", Attrs{{L"b", L""}}}}));
    // Nesting is not counted: the first closing tag ends it.
    EXPECT_EQ(parse(L"[b]1[b]2[/b]3"),
              (std::vector<Block>{{L"1", Attrs{{L"b", L""}}}, {L"2", Attrs{{L"b", L""}}}, {L"3", {}}}));
    // A second opening replaces the value; adjacent tags make no empty blocks.
    EXPECT_EQ(parse(L"[color=1]a[color=2][b]b"),
              (std::vector<Block>{{L"a", Attrs{{L"color", L"1"}}},
                                  {L"b", Attrs{{L"color", L"2"}, {L"b", L""}}}}));
    // Only the first "=" splits; the value keeps the rest.
    EXPECT_EQ(parse(L"[color=a=b]x"), (std::vector<Block>{{L"x", Attrs{{L"color", L"a=b"}}}}));
}

TEST(TextUtilParseTest, LineEndsSplitBlocksAndCarryAttributes) {
    using Attrs = std::map<std::wstring, std::wstring>;
    EXPECT_EQ(parse(L"[b]x\ny\n"), (std::vector<Block>{{L"x", Attrs{{L"b", L""}}, true},
                                                        {L"y", Attrs{{L"b", L""}}, true},
                                                        {L"", Attrs{{L"b", L""}}, false}}));
    EXPECT_EQ(parse(L""), (std::vector<Block>{{L"", {}}}));
}

TEST(TextUtilParseTest, WhatIsNotATagIsText) {
    using Attrs = std::map<std::wstring, std::wstring>;
    EXPECT_EQ(parse(L"a[zz]b"), (std::vector<Block>{{L"a[zz]b", {}}}));
    EXPECT_EQ(parse(L"a]b"), (std::vector<Block>{{L"a]b", {}}}));
    EXPECT_EQ(parse(L"a[b"), (std::vector<Block>{{L"a[b", {}}}));
    EXPECT_EQ(parse(L"[]x"), (std::vector<Block>{{L"[]x", {}}}));
    EXPECT_EQ(parse(L"[=b]x"), (std::vector<Block>{{L"[=b]x", {}}}));
    // A bracket inside an unknown body is looked at again.
    EXPECT_EQ(parse(L"[[b]x"), (std::vector<Block>{{L"[", {}}, {L"x", Attrs{{L"b", L""}}}}));
    // The parser appends to what the list holds.
    textutil::TextBlockList blocks(1);
    blocks.front().text = L"old";
    textutil::parseText(L"new", {}, blocks);
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks.back().text, L"new");
}

TEST(TextUtilClipboardTest, NormalisesQuotesFromTheClipboard) {
    EXPECT_EQ(textutil::getTextFromClipboard(), L"");
    textutil::copyTextToClipboard(L"lost");  // no application: nothing happens

    vurel_test::TestApplication app;
    textutil::copyTextToClipboard(L"\x00AB" L"a\x00BB b\x00B4s");
    EXPECT_EQ(app.getClipboardText(), L"\x00AB" L"a\x00BB b\x00B4s");
    EXPECT_EQ(textutil::getTextFromClipboard(), L"\"a\" b's");
}

TEST(TextUtilTabsTest, WithoutGuiTabsBecomeFourSpaces) {
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"\tx"), L"    x");
}

class TextUtilTabsGuiTest : public vurel_test::GuiFixture {};

TEST_F(TextUtilTabsGuiTest, UsesTheTabSpacesCountOfTheGui) {
    gui().setTabSpacesCount(2);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"\ta\t\tb\t"), L"  a    b  ");
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"none"), L"none");
    gui().setTabSpacesCount(0);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"a\t\tb"), L"ab");
    // The expansion is capped by its buffer.
    gui().setTabSpacesCount(1000);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"\t").size(), 127u);
}
