#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "LogCapture.h"
#include "rast/Font.h"
#include "rast/FreeTypeFont.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/TextString.h"
#include "rast/backends/recording/RecordingBackend.h"

namespace {

using Events = std::vector<std::string>;

class FontTest : public testing::Test {
protected:
    void SetUp() override {
        auto backend = std::make_unique<rastRecordingBackend>();
        rec_ = backend.get();
        renderer_ = rastRenderer::create(std::move(backend));
        ASSERT_NE(renderer_, nullptr);
    }
    void TearDown() override { rastRenderer::destroy(); }

    rastFontManager& fonts() { return *renderer_->getFontManager(); }
    std::shared_ptr<rastFont> dejaVu(int size, int blur = 0) {
        std::shared_ptr<rastFont> font = fonts().getFont("default", size, blur);
        EXPECT_NE(font, nullptr) << "DejaVu Sans missing: install fonts-dejavu-core";
        return font;
    }
    std::string atlasEvent(rastFont const& font, char const* prefix) {
        return std::string(prefix) + " id=" + std::to_string(font.getAtlasTexture());
    }

    rastRenderer* renderer_ = nullptr;
    rastRecordingBackend* rec_ = nullptr;
};

}  // namespace

TEST_F(FontTest, DejaVuMetricsArePlausibleAndShared) {
    std::shared_ptr<rastFont> const f16 = dejaVu(16);
    std::shared_ptr<rastFont> const f32 = dejaVu(32);
    ASSERT_TRUE(f16 && f32);

    EXPECT_GE(f16->getLineHeight(), 16);
    EXPECT_LE(f16->getLineHeight(), 22);
    EXPECT_GE(f16->getAscent(), 12);
    EXPECT_LE(f16->getAscent(), 17);
    EXPECT_LT(f16->getDescent(), 0);
    EXPECT_GE(f16->getDescent(), -6);
    EXPECT_GE(f16->getLineHeight(), f16->getAscent() - f16->getDescent());

    int const hello = f16->getTextWidth(L"Hello");
    EXPECT_GE(hello, 30);
    EXPECT_LE(hello, 50);
    EXPECT_EQ(f16->getTextWidth(L"Hello"), hello);
    EXPECT_EQ(f16->getTextWidth(L""), 0);
    EXPECT_GT(f32->getTextWidth(L"Hello"), hello * 18 / 10);
    EXPECT_GT(f32->getLineHeight(), f16->getLineHeight());

    // Kerning only ever pulls this pair together, and widths and pen steps agree.
    int const av = f16->getTextWidth(L"AV");
    EXPECT_LE(av, f16->getTextWidth(L"A") + f16->getTextWidth(L"V"));
    EXPECT_EQ(av, static_cast<int>(f16->getGlyph(L'A').advance + f16->getGlyph(L'V').advance) +
                      f16->getKerning(L'A', L'V'));

    // One font object per file, size and blur, whatever name led to the file.
    EXPECT_EQ(fonts().getFont("DejaVuSans", 16, 0), f16);
    EXPECT_EQ(fonts().getFont("DejaVuSans.ttf", 16, 0), f16);
    EXPECT_EQ(fonts().getFont(rastFontManager::kDefaultFontFile, 16, 0), f16);
    EXPECT_NE(fonts().getFont("default", 16, 1), f16);
    EXPECT_EQ(fonts().getFont("default", 16, 7), fonts().getFont("default", 16, 2));
    EXPECT_EQ(fonts().resolveFile("DejaVuSans-Bold"), "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");
}

TEST_F(FontTest, NamesThatLeadNowhereGiveNullAndLogOnce) {
    vurel_test::LogCapture log;
    EXPECT_EQ(fonts().getFont("", 16, 0), nullptr);
    EXPECT_EQ(fonts().getFont("default", 0, 0), nullptr);
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(fonts().getFont("no-such-font.ttf", 16, 0), nullptr);
    EXPECT_EQ(fonts().getFont("no-such-font.ttf", 12, 1), nullptr);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_TRUE(log.contains("VUREL", 16, "no-such-font.ttf"));

    // A file that is there but is no font: also one line, also null.
    std::string const broken = VUREL_TEST_DATA_DIR "/not_a_font.ttf";
    EXPECT_EQ(fonts().getFont(broken, 16, 0), nullptr);
    EXPECT_EQ(fonts().getFont(broken, 16, 0), nullptr);
    EXPECT_EQ(log.lines().size(), 2u);
    EXPECT_TRUE(log.contains("VUREL", 16, "not_a_font.ttf"));

    // A search path makes a relative name findable that was not before.
    EXPECT_EQ(fonts().getFont("dejavu/DejaVuSans.ttf", 16, 0), nullptr);
    fonts().addSearchPath("/usr/share/fonts/truetype");
    EXPECT_EQ(fonts().getFont("dejavu/DejaVuSans.ttf", 16, 0), fonts().getFont("default", 16, 0));
    EXPECT_EQ(log.lines().size(), 3u);
}

TEST_F(FontTest, FixedWidthFontTakesPrecedence) {
    fonts().registerFixedWidthFont("default", 8, 16, 12, -4);
    std::shared_ptr<rastFont> const font = fonts().getFont("default", 20, 1);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getTextWidth(L"abc"), 24);
    EXPECT_FALSE(font->hasHaloGlyphs());
}

TEST_F(FontTest, GlyphsUploadOncePerBatchAndLookupsDoNotAllocate) {
    std::shared_ptr<rastFont> const font = dejaVu(16);
    ASSERT_TRUE(font);
    rec_->clearEvents();
    font->getTextWidth(L"Hello");
    EXPECT_EQ(font->getAtlasTexture(), 0u);  // nothing on the GPU before the flush
    fonts().doRedraw();
    ASSERT_NE(font->getAtlasTexture(), 0u);
    EXPECT_EQ(rec_->getEvents({"createTexture", "updateTexture"}),
              Events{"createTexture id=" + std::to_string(font->getAtlasTexture()) + " 256x256 a8"});

    // Known glyphs upload nothing; a batch of new ones uploads once, at the end of the rebuild stage.
    rec_->clearEvents();
    font->getTextWidth(L"Hello");
    fonts().doRedraw();
    EXPECT_TRUE(rec_->getEvents().empty());
    font->getGlyph(L'W');
    font->getGlyph(L'x');
    renderer_->endRedraw();
    Events const events = rec_->getEvents({"updateTexture", "endRedraw"});
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].rfind(atlasEvent(*font, "updateTexture") + " 0 ", 0), 0u) << events[0];
    EXPECT_EQ(events[1], "endRedraw");

    rastFont::Glyph const& h = font->getGlyph(L'H');
    EXPECT_GT(h.w, 0);
    EXPECT_LT(h.y, 0);  // above the baseline
    EXPECT_GT(h.uMax, h.uMin);
    EXPECT_LE(h.uMax, 1.0f);
    EXPECT_EQ(font->getGlyph(L' ').w, 0);
    EXPECT_GT(font->getGlyph(L' ').advance, 0);

    {
        vurel_test::AllocationCounter counter;
        for (int i = 0; i < 10; ++i) {
            font->getTextWidth(L"Hello W");
            font->getGlyph(L'x');
            fonts().getFont("default", 16, 0);
        }
        fonts().doRedraw();
        EXPECT_EQ(counter.count(), 0u);
    }
}

TEST_F(FontTest, ManyGlyphsSpreadOverPagesAndStringsDrawPerPage) {
    std::shared_ptr<rastFont> const font = dejaVu(16);
    ASSERT_TRUE(font);
    for (wchar_t c = 0x20; c < 0x600; ++c)
        font->getGlyph(c);
    ASSERT_GT(font->getPageCount(), 1);
    fonts().doRedraw();
    EXPECT_EQ(rec_->countEvents("createTexture"), static_cast<size_t>(font->getPageCount()));
    int const last = font->getPageCount() - 1;
    EXPECT_NE(font->getPageTexture(last), font->getAtlasTexture());

    // A Latin letter sits on the first page, the last ones asked for further on.
    wchar_t late = 0x5ff;
    while (late > 0x20 && font->getGlyph(late).page == 0)
        --late;
    ASSERT_GT(font->getGlyph(late).page, 0);
    rastTextString text;
    text.setFont(font);
    text.setText(std::wstring{L'a', late});
    text.redraw();
    rec_->clearEvents();
    text.draw(*renderer_->getShader());
    auto const& draws = rec_->getDraws();
    ASSERT_EQ(draws.size(), 2u);
    EXPECT_EQ(draws[0].state.texture, font->getAtlasTexture());
    EXPECT_EQ(draws[1].state.texture, font->getPageTexture(font->getGlyph(late).page));
}

TEST_F(FontTest, BlurredFontsCarryPaddedHaloGlyphs) {
    std::shared_ptr<rastFont> const plain = dejaVu(16, 0);
    std::shared_ptr<rastFont> const blur1 = dejaVu(16, 1);
    std::shared_ptr<rastFont> const blur2 = dejaVu(16, 2);
    ASSERT_TRUE(plain && blur1 && blur2);
    EXPECT_FALSE(plain->hasHaloGlyphs());
    EXPECT_EQ(plain->getHaloGlyph(L'H'), nullptr);
    EXPECT_EQ(blur2->getBlur(), rastFont::Blur2);

    rastFont::Glyph const& g = blur1->getGlyph(L'H');
    rastFont::Glyph const* h1 = blur1->getHaloGlyph(L'H');
    rastFont::Glyph const* h2 = blur2->getHaloGlyph(L'H');
    ASSERT_TRUE(h1 && h2);
    EXPECT_EQ(h1->w, g.w + 4);
    EXPECT_EQ(h1->h, g.h + 4);
    EXPECT_EQ(h1->x, g.x - 2);
    EXPECT_EQ(h1->y, g.y - 2);
    EXPECT_EQ(h2->w, g.w + 8);
    EXPECT_EQ(h1->advance, g.advance);
    // Plain glyphs do not change with blur.
    EXPECT_EQ(plain->getGlyph(L'H').w, g.w);
    EXPECT_EQ(blur1->getTextWidth(L"Hello"), plain->getTextWidth(L"Hello"));
}

TEST_F(FontTest, TextStringWithDejaVuLaysOutAllLayers) {
    std::shared_ptr<rastFont> const font = dejaVu(16, 1);
    ASSERT_TRUE(font);
    rastTextString text;
    text.setFont(font);
    text.setText(L"AV ok");
    text.setPosition({10, 30});
    text.setColor({0, 0, 0, 1});
    text.setBkgColor({1, 1, 1, 1});
    text.setShadowColor({0, 0, 0, 0.5f});
    text.setShadowOffset({2, 3});
    text.setBlurColor({1, 1, 0, 0.5f});
    text.setLineThroughColor({1, 0, 0, 1});
    text.setLineThroughHeight(2);
    text.redraw();
    renderer_->endRedraw();

    // Background, 4 shadow, 4 halo, 4 glyphs (the space has none), line-through.
    int const n = 4;
    ASSERT_EQ(text.getQuadCount(), 3 * n + 2);
    rec_->clearEvents();
    text.draw(*renderer_->getShader());
    ASSERT_EQ(rec_->getDraws().size(), 1u);
    auto const& d = rec_->getDraws()[0];
    EXPECT_EQ(d.state.texture, font->getAtlasTexture());
    ASSERT_EQ(d.quads.size(), static_cast<size_t>(3 * n + 2));

    rastQuad const& bkg = d.quads[0];
    EXPECT_EQ(bkg.x, 10.0f);
    EXPECT_EQ(bkg.y, 30.0f - static_cast<float>(font->getAscent()));
    EXPECT_EQ(bkg.w, static_cast<float>(text.getWidth()));
    EXPECT_EQ(bkg.h, static_cast<float>(font->getAscent() - font->getDescent()));
    EXPECT_EQ(d.colors[0], osg::Vec4f(1, 1, 1, 1));

    rastQuad const* shadow = &d.quads[1];
    rastQuad const* halo = &d.quads[1 + n];
    rastQuad const* glyphs = &d.quads[1 + 2 * n];
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(shadow[i].x, glyphs[i].x + 2);
        EXPECT_EQ(shadow[i].y, glyphs[i].y + 3);
        EXPECT_EQ(halo[i].x, glyphs[i].x - 2);
        EXPECT_EQ(halo[i].w, glyphs[i].w + 4);
        EXPECT_EQ(d.colors[1 + n + i], osg::Vec4f(1, 1, 0, 0.5f));
        EXPECT_EQ(d.colors[1 + 2 * n + i], osg::Vec4f(0, 0, 0, 1));
    }
    // The pen steps by advance plus kerning, as getTextWidth measures.
    rastFont::Glyph const& a = font->getGlyph(L'A');
    rastFont::Glyph const& v = font->getGlyph(L'V');
    EXPECT_EQ(glyphs[0].x, 10 + a.x);
    EXPECT_EQ(glyphs[1].x, 10 + a.advance + static_cast<float>(font->getKerning(L'A', L'V')) + v.x);

    rastQuad const& line = d.quads.back();
    EXPECT_EQ(line.w, static_cast<float>(text.getWidth()));
    EXPECT_EQ(line.h, 2.0f);
    EXPECT_LT(line.y, 30.0f);
    EXPECT_GT(line.y, 30.0f - static_cast<float>(font->getAscent()));
    EXPECT_EQ(line.uMin, font->getSolidTexel().x);
    EXPECT_EQ(d.colors.back(), osg::Vec4f(1, 0, 0, 1));
}

TEST_F(FontTest, UnusedFontsCanBeReleased) {
    std::shared_ptr<rastFont> kept = dejaVu(16);
    std::shared_ptr<rastFont> dropped = dejaVu(24);
    ASSERT_TRUE(kept && dropped);
    dropped->getGlyph(L'a');
    fonts().doRedraw();
    rastTextureId const atlas = dropped->getAtlasTexture();
    dropped.reset();
    EXPECT_EQ(fonts().getFontCount(), 2);
    rec_->clearEvents();
    fonts().releaseUnusedFonts();
    EXPECT_EQ(fonts().getFontCount(), 1);
    EXPECT_EQ(rec_->getEvents({"destroyTexture"}), Events{"destroyTexture id=" + std::to_string(atlas)});
    EXPECT_EQ(fonts().getFont("default", 16, 0), kept);
}
