#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "LogCapture.h"
#include "RecordingRenderer.h"
#include "Skin/Text.h"
#include "rast/Font.h"
#include "rast/TextString.h"

using gui::Align;
using gui::Align2;
using gui::Insets;
using Lines = std::vector<std::wstring>;

namespace {

osg::Vec4f const kRed{1, 0, 0, 1};

// A text over a fixed-width font: every character is 10 pixels wide, lines
// are 20 apart, ascent 15 and descent -5, so every width can be counted.
class TextTest : public vurel_test::RecordingRendererTest {
protected:
    void SetUp() override {
        RecordingRendererTest::SetUp();
        renderer_->getFontManager()->registerFixedWidthFont("fixed", 10, 20, 15, -5);
        text = std::make_unique<gui::Text>();
        text->setFont("fixed", 12, rastFont::BlurNone);
    }
    void TearDown() override {
        text.reset();
        RecordingRendererTest::TearDown();
    }

    // Lays `value` out again, whatever the dirty flag says.
    Lines layout(wchar_t const* value, osg::Vec2i const& size, bool deleteInvisible = true) {
        text->setDirty(true);
        text->redraw(value, size, deleteInvisible);
        return Lines(text->getTextLines().begin(), text->getTextLines().end());
    }
    Lines shown() const {
        Lines result;
        for (rastTextString const* s : text->getStrings())
            result.emplace_back(s->getText());
        return result;
    }
    osg::Vec2f position(int line) const { return text->getStrings().at(size_t(line))->getPosition(); }
    void setAlign(Align::Type horz, int horzOffset, Align::Type vert, int vertOffset = 0) {
        text->setAlign(Align2(Align(horz, horzOffset), Align(vert, vertOffset)));
    }

    std::unique_ptr<gui::Text> text;
};

}  // namespace

TEST_F(TextTest, WrappingDividesAtWordsAndLineEnds) {
    text->setWrapping(true);
    EXPECT_EQ(layout(L"hello world foo", {100, 200}), (Lines{L"hello ", L"world foo"}));
    EXPECT_EQ(layout(L"abcdefghijkl mn", {100, 200}), (Lines{L"abcdefghijkl ", L"mn"}));
    EXPECT_EQ(layout(L"a\n", {100, 200}), (Lines{L"a", L""}));
    EXPECT_EQ(layout(L"", {100, 200}), (Lines{L""}));
    EXPECT_EQ(layout(L"a\n\nb", {100, 200}), (Lines{L"a", L"", L"b"}));

    // Insets narrow the width; a negative horizontal offset widens it again.
    text->setInsets(Insets(10, 0, 10, 0));
    EXPECT_EQ(layout(L"hello world foo", {100, 200}), (Lines{L"hello ", L"world ", L"foo"}));
    setAlign(Align::Min, -20, Align::Middle);
    EXPECT_EQ(layout(L"hello world foo", {100, 200}), (Lines{L"hello ", L"world foo"}));
}

TEST_F(TextTest, WithoutWrappingOnlyTheFirstLineShows) {
    EXPECT_EQ(layout(L"first\nsecond", {100, 200}), (Lines{L"first"}));
    EXPECT_EQ(layout(L"hello world foo", {50, 200}), (Lines{L"hello world foo"}));
}

TEST_F(TextTest, EllipsisShortensWhatDoesNotFit) {
    text->setUseEllipsis(true);
    EXPECT_EQ(layout(L"abcdefgh", {60, 20}), (Lines{L"abc..."}));
    EXPECT_EQ(layout(L"abc", {30, 20}), (Lines{L"abc"}));
    EXPECT_EQ(layout(L"abc", {0, 20}), (Lines{L"..."}));
    EXPECT_EQ(layout(L"abc", {25, 20}), (Lines{L"..."}));
    EXPECT_EQ(text->calcSize(L"abcdefgh", {60, 20}).x, 60);

    // Wrapped lines are shortened one by one; only the over-wide word needs it.
    text->setWrapping(true);
    EXPECT_EQ(layout(L"abcdefghijkl mn", {100, 200}), (Lines{L"abcdefg...", L"mn"}));
}

TEST_F(TextTest, LinesAreAlignedInsideTheInsets) {
    layout(L"abc", {101, 41});
    EXPECT_EQ(position(0), osg::Vec2f(0, 10 + 15));  // (41 - 20) / 2 rounds down
    setAlign(Align::Center, 0, Align::Min);
    layout(L"abc", {101, 41});
    EXPECT_EQ(position(0), osg::Vec2f(35, 15));  // (101 - 30) / 2 rounds down
    setAlign(Align::Max, 0, Align::Max);
    layout(L"abc", {101, 41});
    EXPECT_EQ(position(0), osg::Vec2f(71, 21 + 15));
    setAlign(Align::Min, 4, Align::Min, 3);
    layout(L"abc", {101, 41});
    EXPECT_EQ(position(0), osg::Vec2f(4, 3 + 15));

    text->setInsets(Insets(7, 6, 4, 0));
    setAlign(Align::Center, 0, Align::Middle);
    layout(L"abc", {101, 41});
    EXPECT_EQ(position(0), osg::Vec2f(7 + 30, 6 + 7 + 15));

    // Lines stack by the line height, the block centred as a whole.
    text->setInsets(Insets());
    text->setWrapping(true);
    text->setLineHeight(25);
    layout(L"a\nbb", {100, 100});
    EXPECT_EQ(position(0), osg::Vec2f(45, 25 + 15));
    EXPECT_EQ(position(1), osg::Vec2f(40, 50 + 15));
}

TEST_F(TextTest, OnlyVisibleLinesGetStrings) {
    text->setWrapping(true);
    wchar_t const* five = L"1\n2\n3\n4\n5";
    // Three lines of 20 reach into a height of 50; the block of three is centred.
    EXPECT_EQ(layout(five, {100, 50}).size(), 5u);
    EXPECT_EQ(shown(), (Lines{L"1", L"2", L"3"}));
    EXPECT_EQ(text->getLineCount(), 3);
    EXPECT_EQ(position(0).y, -5 + 15);
    EXPECT_EQ(position(2).y, -5 + 40 + 15);

    // Creation stops at the visible count even when invisible lines may stay.
    gui::Text other;
    other.setFont("fixed", 12, rastFont::BlurNone);
    other.setWrapping(true);
    other.setDirty(true);
    other.redraw(five, {100, 50}, false);
    EXPECT_EQ(other.getLineCount(), 3);

    // Kept strings stay when the view shrinks, unless invisible lines go.
    layout(five, {100, 200});
    EXPECT_EQ(text->getLineCount(), 5);
    layout(five, {100, 30}, false);
    EXPECT_EQ(text->getLineCount(), 5);
    layout(five, {100, 30}, true);
    EXPECT_EQ(shown(), (Lines{L"1", L"2"}));

    // The vertical offset takes room from the top.
    setAlign(Align::Min, 0, Align::Min, 20);
    layout(five, {100, 50});
    EXPECT_EQ(text->getLineCount(), 2);
    EXPECT_EQ(position(1).y, 20 + 20 + 15);
}

TEST_F(TextTest, StringsAreReusedAcrossLayouts) {
    text->setWrapping(true);
    layout(L"a\nb\nc", {100, 100});
    std::vector<rastTextString*> const first(text->getStrings().begin(), text->getStrings().end());
    ASSERT_EQ(first.size(), 3u);

    layout(L"x\ny\nz", {100, 100});
    EXPECT_EQ(std::vector<rastTextString*>(text->getStrings().begin(), text->getStrings().end()), first);
    EXPECT_EQ(shown(), (Lines{L"x", L"y", L"z"}));

    layout(L"p\nq", {100, 100});
    ASSERT_EQ(text->getLineCount(), 2);
    EXPECT_EQ(text->getStrings()[0], first[0]);
    EXPECT_EQ(text->getStrings()[1], first[1]);

    layout(L"1\n2\n3\n4", {100, 100});
    ASSERT_EQ(text->getLineCount(), 4);
    EXPECT_EQ(text->getStrings()[1], first[1]);
}

TEST_F(TextTest, SettersMarkDirtyAndStyleReachesTheStrings) {
    text->redraw(L"x", {100, 20}, true);
    ASSERT_FALSE(text->isDirty());
    text->setColor(osg::Vec4f(0, 0, 0, 1));
    text->setAlign(Align2(Align(Align::Min), Align(Align::Middle)));
    text->setFont("fixed", 12, rastFont::BlurNone);
    EXPECT_FALSE(text->isDirty());
    text->setLineHeight(0);  // stores and marks even without a change
    EXPECT_TRUE(text->isDirty());
    text->redraw(L"x", {100, 20}, true);

    // Without the flag a redraw keeps the old layout, even for another text.
    text->redraw(L"other", {100, 20}, true);
    EXPECT_EQ(shown(), (Lines{L"x"}));

    gui::Text::Info info;
    info.font = "fixed";
    info.color = kRed;
    info.shadowColor = osg::Vec4f(0, 0, 1, 1);
    info.shadowOffset = osg::Vec2i(2, 3);
    info.lineThroughHeight = 4;
    info.horzAlign = Align(Align::Max);
    text->set(info);
    EXPECT_TRUE(text->isDirty());
    text->redraw(L"ab", {100, 40}, true);
    rastTextString const& s = *text->getStrings().at(0);
    EXPECT_EQ(s.getColor(), kRed);
    EXPECT_EQ(s.getShadowColor(), info.shadowColor);
    EXPECT_EQ(s.getShadowOffset(), info.shadowOffset);
    EXPECT_EQ(s.getLineThroughHeight(), 4);
    EXPECT_EQ(s.getPosition(), osg::Vec2f(80, 10 + 15));
}

TEST_F(TextTest, CalcSizeMeasuresWithoutInsets) {
    text->setWrapping(true);
    EXPECT_EQ(text->calcSize(L"hello world foo", {100, 0}), osg::Vec2i(90, 20 + 15 + 5));
    EXPECT_EQ(text->calcSize(L"a\n\nb", {100, 0}), osg::Vec2i(10, 2 * 20 + 20));
    EXPECT_EQ(text->calcSize(L"", {100, 0}), osg::Vec2i(0, 0));

    setAlign(Align::Min, -7, Align::Middle, -3);
    text->setInsets(Insets(1, 2, 3, 4));
    EXPECT_EQ(text->calcSize(L"hello world foo", {100, 0}), osg::Vec2i(97, 43));
    text->setLineHeight(25);
    EXPECT_EQ(text->calcLineHeight(), 25);
    EXPECT_EQ(text->calcSize(L"hello world foo", {100, 0}), osg::Vec2i(97, 48));

    text->setLineHeight(0);
    EXPECT_EQ(text->calcLineHeight(), 20);
    vurel_test::LogCapture log;  // the font manager reports the missing font
    text->setFont("missing", 12, rastFont::BlurNone);
    EXPECT_EQ(text->calcLineHeight(), 0);
    EXPECT_EQ(text->calcSize(L"abc", {100, 0}), osg::Vec2i(0, 0));
}

TEST_F(TextTest, WithoutAFontThereAreNoStrings) {
    layout(L"abc", {100, 20});
    ASSERT_EQ(text->getLineCount(), 1);
    vurel_test::LogCapture log;  // the font manager reports the missing font
    text->setFont("missing", 12, rastFont::BlurNone);
    layout(L"abc", {100, 20});
    EXPECT_EQ(text->getLineCount(), 0);
    text->setFont("", 12, rastFont::BlurNone);
    layout(L"abc", {100, 20});
    EXPECT_EQ(text->getLineCount(), 0);
    text->doRedraw();
    text->draw();
    gui::GraphicCommands commands;
    text->make(&commands);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), std::vector<std::string>{});
}

TEST_F(TextTest, RecordedTextDrawsAsTheDirectRoad) {
    text->setWrapping(true);
    text->setColor(osg::Vec4f(0, 1, 0, 1));
    layout(L"ab\ncd", {100, 100});
    text->doRedraw();

    backend().clearEvents();
    text->draw();
    std::vector<std::string> const direct = backend().getEvents();
    ASSERT_EQ(direct.size(), 2u);
    gui::GraphicCommands commands;
    text->make(&commands);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), direct);

    backend().clearEvents();
    text->draw(kRed);
    std::vector<std::string> const tinted = backend().getEvents();
    EXPECT_NE(tinted, direct);
    text->make(&commands, kRed);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), tinted);

    // A lone empty line records nothing.
    layout(L"", {100, 100});
    text->doRedraw();
    text->make(&commands);
    EXPECT_TRUE(commands.getCommands().empty());
}

TEST_F(TextTest, SteadyLayoutAllocatesNothing) {
    text->setWrapping(true);
    text->setUseEllipsis(true);
    orm::basic_string<wchar_t> const value = L"a long paragraph of words that wraps\n\nand an overlongwordthatneedsdots end";
    for (int i = 0; i < 2; ++i) {
        layout(value.c_str(), {120, 200});
        text->doRedraw();
    }
    Lines const before = shown();
    {
        vurel_test::AllocationCounter counter;
        text->setDirty(true);
        text->redraw(value, {120, 200}, true);
        text->doRedraw();
        EXPECT_EQ(counter.count(), 0u);
    }
    EXPECT_EQ(shown(), before);
    EXPECT_GT(before.size(), 5u);
}
