#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Export.h"
#include "orm/Allocator.h"
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
        int32_t page = 0;  // the atlas page the coordinates refer to
    };

    virtual ~rastFont() = default;

    virtual int getTextWidth(std::wstring_view text) const = 0;
    virtual int getLineHeight() const = 0;
    virtual int getAscent() const = 0;
    // Negative: the distance below the baseline.
    virtual int getDescent() const = 0;
    virtual Blur getBlur() const { return BlurNone; }
    // Pen adjustment in pixels between two neighbours, added to the advance of `left`.
    virtual int getKerning(wchar_t left, wchar_t right) const {
        (void)left;
        (void)right;
        return 0;
    }

    // The glyph of `ch`; characters the face lacks give an empty glyph.
    virtual Glyph const& getGlyph(wchar_t ch) const = 0;
    // A blurred, padded copy of the glyph for the halo under the text; null
    // when the font has none (fonts fetched without blur).
    virtual Glyph const* getHaloGlyph(wchar_t ch) const {
        (void)ch;
        return nullptr;
    }
    virtual bool hasHaloGlyphs() const { return false; }

    // The atlas that glyph coordinates of page 0 refer to, and a texel that
    // is fully covered on every page, for backgrounds and lines.
    virtual rastTextureId getAtlasTexture() const = 0;
    virtual osg::Vec2f getSolidTexel() const = 0;
    // Fonts with many glyphs spread them over several atlas pages.
    virtual int getPageCount() const { return 1; }
    virtual rastTextureId getPageTexture(int page) const { return page == 0 ? getAtlasTexture() : 0; }
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
//
// A name is, in this order: a registered fixed-width font; "default" or
// "DejaVuSans", which stand for kDefaultFontFile; a font file path, as given
// (absolute or relative to the current directory) or relative to a search
// path; a file name (with or without extension) found under the system font
// folders. Fonts are shared per file, size and blur. A name that leads to no
// readable font is logged once.
class VUREL_EXPORT rastFontManager {
public:
    static constexpr char const* kDefaultFontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

    rastFontManager();
    virtual ~rastFontManager();
    rastFontManager(rastFontManager const&) = delete;
    rastFontManager& operator=(rastFontManager const&) = delete;

    // `size` in pixels, at least 1; `blur` 0, 1 or 2 (other values are clamped).
    virtual std::shared_ptr<rastFont> getFont(orm::basic_string<char> const& name, int size, int blur);

    // Registers a fixed-width font under `name`; it answers for every size and blur.
    void registerFixedWidthFont(orm::basic_string<char> const& name, int charWidth, int lineHeight, int ascent,
                                int descent);

    // A folder searched for font files after the current directory; later
    // folders come after earlier ones.
    void addSearchPath(orm::basic_string<char> const& dir);
    // The font file `name` stands for; empty when there is none.
    orm::basic_string<char> resolveFile(orm::basic_string<char> const& name) const;

    // Forgets fonts nobody else holds any more, giving their atlases back.
    void releaseUnusedFonts();
    int getFontCount() const;

    // Deferred work of the frame: glyph uploads.
    virtual void doRedraw();

protected:
    // One loaded font; a null font marks a file that failed at that size.
    struct Sized {
        int size = 0;
        int blur = 0;
        std::shared_ptr<rastFont> font;
    };
    struct FileFonts {
        orm::basic_string<char> path;
        orm::vector<Sized> fonts;
    };

    FileFonts* findFile_(orm::basic_string<char> const& name);
    void logOnce_(orm::basic_string<char> const& name, char const* what);

    std::unordered_map<orm::basic_string<char>, std::shared_ptr<rastFont>> fixedFonts_;
    orm::vector<orm::basic_string<char>> searchPaths_;
    // Fonts by resolved file; names as asked point into it, or hold null for
    // names that resolve to no file.
    std::unordered_map<orm::basic_string<char>, FileFonts> files_;
    std::unordered_map<orm::basic_string<char>, FileFonts*> names_;
    std::unordered_set<orm::basic_string<char>> logged_;
    // Font files under the system folders by file name and by stem, read once.
    mutable std::unordered_map<orm::basic_string<char>, orm::basic_string<char>> systemFonts_;
    mutable bool systemFontsScanned_ = false;
};
