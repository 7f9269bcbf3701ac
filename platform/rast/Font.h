#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>

#include "Export.h"
#include "orm/String.h"
#include "rast/Types.h"

// One face at one pixel size and blur. Metrics are integers in pixels.
class VUREL_EXPORT rastFont {
public:
    enum Blur : int32_t { BlurNone = 0, Blur1 = 1, Blur2 = 2 };

    // Where a glyph's box sits relative to the pen on the baseline, and its
    // part of the atlas texture.
    struct Glyph {
        float advance = 0;
        float x = 0, y = 0, w = 0, h = 0;
        float uMin = 0, vMin = 0, uMax = 0, vMax = 0;
    };

    virtual ~rastFont() = default;

    virtual int getTextWidth(std::wstring_view text) const = 0;
    virtual int getLineHeight() const = 0;
    virtual int getAscent() const = 0;
    // Negative: the distance below the baseline.
    virtual int getDescent() const = 0;
    virtual Blur getBlur() const { return BlurNone; }

    // The glyph of `ch`; characters the face lacks give an empty glyph.
    virtual Glyph const& getGlyph(wchar_t ch) const = 0;
    // The atlas that glyph coordinates refer to, and a texel in it that is
    // fully covered, for backgrounds and lines.
    virtual rastTextureId getAtlasTexture() const = 0;
    virtual osg::Vec2f getSolidTexel() const = 0;
    // Uploads what getGlyph added to the atlas since the last call.
    virtual void flushAtlas() {}
};

// A font whose every character has the same advance: for tests that need
// widths that can be checked by hand. Glyphs are solid boxes.
class VUREL_EXPORT rastFixedWidthFont : public rastFont {
public:
    rastFixedWidthFont(int charWidth, int lineHeight, int ascent, int descent);
    ~rastFixedWidthFont() override;

    int getTextWidth(std::wstring_view text) const override {
        return static_cast<int>(text.size()) * charWidth_;
    }
    int getLineHeight() const override { return lineHeight_; }
    int getAscent() const override { return ascent_; }
    int getDescent() const override { return descent_; }
    Glyph const& getGlyph(wchar_t ch) const override;
    rastTextureId getAtlasTexture() const override { return atlas_; }
    osg::Vec2f getSolidTexel() const override { return {0.5f, 0.5f}; }

private:
    int charWidth_, lineHeight_, ascent_, descent_;
    rastTextureId atlas_ = 0;
    Glyph box_;
    Glyph space_;
};

// Fonts by name, size and blur. Asking for a font that cannot be had answers
// null, and callers draw no text.
class VUREL_EXPORT rastFontManager {
public:
    rastFontManager() = default;
    virtual ~rastFontManager();
    rastFontManager(rastFontManager const&) = delete;
    rastFontManager& operator=(rastFontManager const&) = delete;

    virtual std::shared_ptr<rastFont> getFont(orm::basic_string<char> const& name, int size, int blur);

    // Registers a fixed-width font under `name`; it answers for every size and blur.
    void registerFixedWidthFont(orm::basic_string<char> const& name, int charWidth, int lineHeight, int ascent,
                                int descent);

    // Deferred work of the frame: glyph uploads.
    virtual void doRedraw();

protected:
    std::unordered_map<orm::basic_string<char>, std::shared_ptr<rastFont>> fixedFonts_;
};
