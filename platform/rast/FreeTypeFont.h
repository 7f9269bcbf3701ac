#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>

#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "rast/Font.h"

struct FT_FaceRec_;
struct FT_LibraryRec_;

// A font file read by FreeType: one face at one pixel size. Glyphs are
// rasterised the first time they are asked for, into CPU-side coverage pages
// that flushAtlas uploads; a glyph already known costs one hash lookup and no
// allocation. A font fetched with blur 1 or 2 also makes a halo copy of every
// glyph, widened and softened by that many pixels.
class VUREL_EXPORT rastFreeTypeFont : public rastFont {
public:
    // Null when `file` cannot be read as a font at `pixelSize`.
    static std::shared_ptr<rastFreeTypeFont> load(orm::basic_string<char> const& file, int pixelSize, Blur blur);

    ~rastFreeTypeFont() override;
    rastFreeTypeFont(rastFreeTypeFont const&) = delete;
    rastFreeTypeFont& operator=(rastFreeTypeFont const&) = delete;

    int getTextWidth(std::wstring_view text) const override;
    int getLineHeight() const override { return lineHeight_; }
    int getAscent() const override { return ascent_; }
    int getDescent() const override { return descent_; }
    Blur getBlur() const override { return blur_; }
    int getKerning(wchar_t left, wchar_t right) const override;

    Glyph const& getGlyph(wchar_t ch) const override;
    Glyph const* getHaloGlyph(wchar_t ch) const override;
    bool hasHaloGlyphs() const override { return blur_ != BlurNone; }

    rastTextureId getAtlasTexture() const override { return getPageTexture(0); }
    osg::Vec2f getSolidTexel() const override;
    int getPageCount() const override;
    rastTextureId getPageTexture(int page) const override;
    void flushAtlas() override;

    orm::basic_string<char> const& getFile() const { return file_; }
    int getPixelSize() const { return pixelSize_; }
    // Side of the square atlas pages, in pixels.
    int getPageSize() const;
    // How many distinct characters have been rasterised so far.
    int getGlyphCount() const { return static_cast<int>(glyphs_.size()); }

private:
    class Atlas;
    struct Entry {
        Glyph plain;
        Glyph halo;
        uint32_t index = 0;  // the face's glyph index, 0 for characters it lacks
    };

    rastFreeTypeFont(orm::basic_string<char> const& file, std::shared_ptr<FT_LibraryRec_> library, FT_FaceRec_* face,
                     int pixelSize, Blur blur);
    Entry const& findOrAdd_(wchar_t ch) const;
    void rasterise_(Entry& entry) const;
    // Turns the face's current glyph bitmap into tight 8-bit coverage in
    // coverage_; false for bitmaps it cannot read.
    bool readCoverage_(int& width, int& height) const;
    void addHalo_(Entry& entry, int width, int height) const;

    std::shared_ptr<FT_LibraryRec_> library_;
    FT_FaceRec_* face_ = nullptr;
    orm::basic_string<char> file_;
    int pixelSize_ = 0;
    Blur blur_ = BlurNone;
    bool kerning_ = false;
    int lineHeight_ = 0, ascent_ = 0, descent_ = 0;

    std::unique_ptr<Atlas> atlas_;
    // Glyphs by character code; values are stable, so references stay valid.
    mutable std::unordered_map<uint32_t, Entry> glyphs_;
    // Scratch buffers of the rasteriser, kept to spare allocations.
    mutable orm::vector<uint8_t> coverage_, halo_, haloTemp_;
};
