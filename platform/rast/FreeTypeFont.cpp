#include "rast/FreeTypeFont.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BITMAP_H

#include <algorithm>
#include <cmath>
#include <cstring>

#include "rast/Renderer.h"

namespace {

// One FreeType library for all faces; it lives while any font holds it.
std::shared_ptr<FT_LibraryRec_> acquireLibrary() {
    static std::weak_ptr<FT_LibraryRec_> shared;
    if (std::shared_ptr<FT_LibraryRec_> library = shared.lock())
        return library;
    FT_Library raw = nullptr;
    if (FT_Init_FreeType(&raw) != 0)
        return nullptr;
    std::shared_ptr<FT_LibraryRec_> library(raw, [](FT_Library l) { FT_Done_FreeType(l); });
    shared = library;
    return library;
}

int ceil26(FT_Pos v) { return static_cast<int>(std::ceil(static_cast<double>(v) / 64.0)); }
int floor26(FT_Pos v) { return static_cast<int>(std::floor(static_cast<double>(v) / 64.0)); }
int round26(FT_Pos v) { return static_cast<int>(std::lround(static_cast<double>(v) / 64.0)); }

// Picks the bitmap strike nearest to `pixelSize` for faces without outlines.
bool selectNearestStrike(FT_Face face, int pixelSize) {
    if (face->num_fixed_sizes <= 0)
        return false;
    int best = 0;
    for (int i = 1; i < face->num_fixed_sizes; ++i)
        if (std::abs(face->available_sizes[i].height - pixelSize) <
            std::abs(face->available_sizes[best].height - pixelSize))
            best = i;
    return FT_Select_Size(face, best) == 0;
}

// Spreads `src` (w by h coverage) by `radius` pixels and softens it: a round
// dilation followed by a box blur of the same radius, so the result is padded
// by twice the radius on every side.
void makeHalo(uint8_t const* src, int w, int h, int radius, orm::vector<uint8_t>& out, orm::vector<uint8_t>& temp) {
    int const pad = 2 * radius;
    int const W = w + 2 * pad;
    int const H = h + 2 * pad;
    int const reach = radius * radius + radius;  // round rather than square corners
    temp.assign(static_cast<size_t>(W) * H, 0);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            uint8_t m = 0;
            for (int dy = -radius; dy <= radius; ++dy)
                for (int dx = -radius; dx <= radius; ++dx) {
                    int const sx = x - pad + dx, sy = y - pad + dy;
                    if (dx * dx + dy * dy <= reach && sx >= 0 && sy >= 0 && sx < w && sy < h)
                        m = std::max(m, src[sy * w + sx]);
                }
            temp[static_cast<size_t>(y) * W + x] = m;
        }
    int const span = 2 * radius + 1;
    out.assign(temp.size(), 0);
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            int sum = 0;
            for (int d = -radius; d <= radius; ++d)
                if (x + d >= 0 && x + d < W)
                    sum += temp[static_cast<size_t>(y) * W + x + d];
            out[static_cast<size_t>(y) * W + x] = static_cast<uint8_t>(sum / span);
        }
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x) {
            int sum = 0;
            for (int d = -radius; d <= radius; ++d)
                if (y + d >= 0 && y + d < H)
                    sum += out[static_cast<size_t>(y + d) * W + x];
            temp[static_cast<size_t>(y) * W + x] = static_cast<uint8_t>(sum / span);
        }
    out.swap(temp);
}

}  // namespace

// Square A8 pages packed in shelves. Each page starts with a small fully
// covered block for solid quads; every glyph keeps a one-texel empty border
// so that filtering never pulls in a neighbour. Changed rows are uploaded on
// flush.
class rastFreeTypeFont::Atlas {
public:
    explicit Atlas(int side) : side_(side) { addPage_(); }
    ~Atlas() {
        rastRenderer* renderer = rastRenderer::get();
        if (!renderer)
            return;
        for (Page const& page : pages_)
            if (page.texture)
                renderer->getBackend().destroyTexture(page.texture);
    }
    Atlas(Atlas const&) = delete;
    Atlas& operator=(Atlas const&) = delete;

    int getSide() const { return side_; }
    int getPageCount() const { return static_cast<int>(pages_.size()); }
    rastTextureId getTexture(int page) const {
        return page >= 0 && page < getPageCount() ? pages_[page].texture : 0;
    }
    osg::Vec2f getSolidTexel() const {
        float const c = 2.5f / static_cast<float>(side_);
        return {c, c};
    }

    // Copies w by h coverage into a free spot and points `glyph` there. A
    // bitmap larger than a page leaves the glyph without a box.
    void add(uint8_t const* pixels, int w, int h, Glyph& glyph) {
        int x = 0, y = 0;
        if (w <= 0 || h <= 0 || !reserve_(w, h, x, y)) {
            glyph.w = glyph.h = 0;
            return;
        }
        Page& page = pages_.back();
        for (int row = 0; row < h; ++row)
            std::memcpy(&page.pixels[static_cast<size_t>(y + row) * side_ + x], pixels + row * w,
                        static_cast<size_t>(w));
        markDirty_(page, y, y + h);
        float const s = static_cast<float>(side_);
        glyph.page = getPageCount() - 1;
        glyph.uMin = static_cast<float>(x) / s;
        glyph.vMin = static_cast<float>(y) / s;
        glyph.uMax = static_cast<float>(x + w) / s;
        glyph.vMax = static_cast<float>(y + h) / s;
    }

    void flush() {
        rastRenderer* renderer = rastRenderer::get();
        if (!renderer)
            return;
        rastBackend& backend = renderer->getBackend();
        for (Page& page : pages_) {
            if (!page.texture) {
                page.texture = backend.createTexture(side_, side_, rastPixelFormat::A8, page.pixels.data());
            } else if (page.dirtyMaxY > page.dirtyMinY) {
                backend.updateTexture(page.texture, 0, page.dirtyMinY, side_, page.dirtyMaxY - page.dirtyMinY,
                                      rastPixelFormat::A8,
                                      page.pixels.data() + static_cast<size_t>(page.dirtyMinY) * side_);
            }
            page.dirtyMinY = side_;
            page.dirtyMaxY = 0;
        }
    }

private:
    struct Page {
        orm::vector<uint8_t> pixels;
        rastTextureId texture = 0;
        int shelfY = 0, shelfHeight = 0, cursorX = 0;
        int dirtyMinY = 0, dirtyMaxY = 0;
    };

    void addPage_() {
        Page page;
        page.pixels.assign(static_cast<size_t>(side_) * side_, 0);
        for (int y = 1; y <= 3; ++y)
            for (int x = 1; x <= 3; ++x)
                page.pixels[static_cast<size_t>(y) * side_ + x] = 255;
        page.cursorX = 4;
        page.shelfHeight = 4;
        page.dirtyMinY = side_;
        pages_.push_back(std::move(page));
    }

    // A slot of (w + 1) by (h + 1) whose first row and column stay empty.
    bool fits_(int w, int h, int shelfY, int cursorX) const {
        return cursorX + w + 1 <= side_ && shelfY + h + 1 <= side_;
    }

    bool reserve_(int w, int h, int& x, int& y) {
        if (w + 1 > side_ || h + 1 > side_)
            return false;
        Page* page = &pages_.back();
        if (!fits_(w, h, page->shelfY, page->cursorX)) {
            int const nextShelf = page->shelfY + page->shelfHeight;
            if (fits_(w, h, nextShelf, 0)) {
                page->shelfY = nextShelf;
                page->shelfHeight = 0;
                page->cursorX = 0;
            } else {
                addPage_();
                page = &pages_.back();
            }
        }
        x = page->cursorX + 1;
        y = page->shelfY + 1;
        page->cursorX += w + 1;
        page->shelfHeight = std::max(page->shelfHeight, h + 1);
        return true;
    }

    static void markDirty_(Page& page, int minY, int maxY) {
        page.dirtyMinY = std::min(page.dirtyMinY, minY);
        page.dirtyMaxY = std::max(page.dirtyMaxY, maxY);
    }

    int side_;
    orm::vector<Page> pages_;
};

std::shared_ptr<rastFreeTypeFont> rastFreeTypeFont::load(orm::basic_string<char> const& file, int pixelSize,
                                                         Blur blur) {
    if (pixelSize < 1)
        return nullptr;
    std::shared_ptr<FT_LibraryRec_> library = acquireLibrary();
    if (!library)
        return nullptr;
    FT_Face face = nullptr;
    if (FT_New_Face(library.get(), file.c_str(), 0, &face) != 0)
        return nullptr;
    if (FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixelSize)) != 0 && !selectNearestStrike(face, pixelSize)) {
        FT_Done_Face(face);
        return nullptr;
    }
    FT_Select_Charmap(face, FT_ENCODING_UNICODE);  // keeps the face's own map when it has no Unicode one
    return std::shared_ptr<rastFreeTypeFont>(new rastFreeTypeFont(file, std::move(library), face, pixelSize, blur));
}

rastFreeTypeFont::rastFreeTypeFont(orm::basic_string<char> const& file, std::shared_ptr<FT_LibraryRec_> library,
                                   FT_FaceRec_* face, int pixelSize, Blur blur)
    : library_(std::move(library)), face_(face), file_(file), pixelSize_(pixelSize), blur_(blur) {
    kerning_ = FT_HAS_KERNING(face_);
    FT_Size_Metrics const& m = face_->size->metrics;
    ascent_ = ceil26(m.ascender);
    descent_ = floor26(m.descender);
    lineHeight_ = std::max(round26(m.height), ascent_ - descent_);
    if (ascent_ <= 0 && descent_ >= 0) {
        // Some bitmap faces carry no vertical metrics: take the size itself.
        ascent_ = pixelSize;
        lineHeight_ = std::max(lineHeight_, pixelSize);
    }
    // Room for about eight rows of glyphs with their halos on a page.
    int const cell = lineHeight_ + 4 * static_cast<int>(blur_) + 2;
    int side = 256;
    while (side < 2048 && side < cell * 8)
        side *= 2;
    atlas_ = std::make_unique<Atlas>(side);
    glyphs_.reserve(128);
}

rastFreeTypeFont::~rastFreeTypeFont() {
    atlas_.reset();
    FT_Done_Face(face_);
}

int rastFreeTypeFont::getTextWidth(std::wstring_view text) const {
    int width = 0;
    uint32_t previous = 0;
    for (wchar_t ch : text) {
        Entry const& e = findOrAdd_(ch);
        if (kerning_ && previous && e.index) {
            FT_Vector delta{0, 0};
            if (FT_Get_Kerning(face_, previous, e.index, FT_KERNING_DEFAULT, &delta) == 0)
                width += round26(delta.x);
        }
        width += static_cast<int>(e.plain.advance);
        previous = e.index;
    }
    return width;
}

int rastFreeTypeFont::getKerning(wchar_t left, wchar_t right) const {
    if (!kerning_)
        return 0;
    uint32_t const l = findOrAdd_(left).index;
    uint32_t const r = findOrAdd_(right).index;
    FT_Vector delta{0, 0};
    if (!l || !r || FT_Get_Kerning(face_, l, r, FT_KERNING_DEFAULT, &delta) != 0)
        return 0;
    return round26(delta.x);
}

rastFont::Glyph const& rastFreeTypeFont::getGlyph(wchar_t ch) const { return findOrAdd_(ch).plain; }

rastFont::Glyph const* rastFreeTypeFont::getHaloGlyph(wchar_t ch) const {
    return blur_ != BlurNone ? &findOrAdd_(ch).halo : nullptr;
}

osg::Vec2f rastFreeTypeFont::getSolidTexel() const { return atlas_->getSolidTexel(); }

int rastFreeTypeFont::getPageCount() const { return atlas_->getPageCount(); }

rastTextureId rastFreeTypeFont::getPageTexture(int page) const { return atlas_->getTexture(page); }

int rastFreeTypeFont::getPageSize() const { return atlas_->getSide(); }

void rastFreeTypeFont::flushAtlas() { atlas_->flush(); }

rastFreeTypeFont::Entry const& rastFreeTypeFont::findOrAdd_(wchar_t ch) const {
    // wchar_t may be signed; character codes are not.
    uint32_t const code = static_cast<uint32_t>(ch);
    auto found = glyphs_.find(code);
    if (found != glyphs_.end())
        return found->second;
    Entry& entry = glyphs_[code];
    entry.index = FT_Get_Char_Index(face_, code);
    if (entry.index)
        rasterise_(entry);
    return entry;
}

void rastFreeTypeFont::rasterise_(Entry& entry) const {
    if (FT_Load_Glyph(face_, entry.index, FT_LOAD_DEFAULT) != 0)
        return;
    FT_GlyphSlot slot = face_->glyph;
    if (slot->format != FT_GLYPH_FORMAT_BITMAP && FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0)
        return;
    entry.plain.advance = static_cast<float>(round26(slot->advance.x));
    entry.halo.advance = entry.plain.advance;
    int width = 0, height = 0;
    if (!readCoverage_(width, height) || width <= 0 || height <= 0)
        return;
    entry.plain.x = static_cast<float>(slot->bitmap_left);
    entry.plain.y = static_cast<float>(-slot->bitmap_top);
    entry.plain.w = static_cast<float>(width);
    entry.plain.h = static_cast<float>(height);
    atlas_->add(coverage_.data(), width, height, entry.plain);
    if (blur_ != BlurNone)
        addHalo_(entry, width, height);
}

bool rastFreeTypeFont::readCoverage_(int& width, int& height) const {
    FT_Bitmap const& bitmap = face_->glyph->bitmap;
    width = static_cast<int>(bitmap.width);
    height = static_cast<int>(bitmap.rows);
    coverage_.resize(static_cast<size_t>(width) * height);
    if (width == 0 || height == 0)
        return true;
    if (bitmap.pixel_mode == FT_PIXEL_MODE_GRAY && bitmap.num_grays == 256 && bitmap.pitch > 0) {
        for (int y = 0; y < height; ++y)
            std::memcpy(&coverage_[static_cast<size_t>(y) * width], bitmap.buffer + y * bitmap.pitch,
                        static_cast<size_t>(width));
        return true;
    }
    if (bitmap.pixel_mode == FT_PIXEL_MODE_BGRA)
        return false;  // colour glyphs do not fit a coverage atlas
    // Monochrome and the rarer grey depths: let FreeType unpack them.
    FT_Bitmap converted;
    FT_Bitmap_Init(&converted);
    bool const ok = FT_Bitmap_Convert(library_.get(), &bitmap, &converted, 1) == 0 && converted.pitch > 0 &&
                    static_cast<int>(converted.width) == width && static_cast<int>(converted.rows) == height;
    if (ok) {
        int const grays = std::max(2, static_cast<int>(converted.num_grays));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                coverage_[static_cast<size_t>(y) * width + x] =
                    static_cast<uint8_t>(converted.buffer[y * converted.pitch + x] * 255 / (grays - 1));
    }
    FT_Bitmap_Done(library_.get(), &converted);
    return ok;
}

void rastFreeTypeFont::addHalo_(Entry& entry, int width, int height) const {
    int const radius = static_cast<int>(blur_);
    int const pad = 2 * radius;
    makeHalo(coverage_.data(), width, height, radius, halo_, haloTemp_);
    entry.halo.x = entry.plain.x - static_cast<float>(pad);
    entry.halo.y = entry.plain.y - static_cast<float>(pad);
    entry.halo.w = static_cast<float>(width + 2 * pad);
    entry.halo.h = static_cast<float>(height + 2 * pad);
    atlas_->add(halo_.data(), width + 2 * pad, height + 2 * pad, entry.halo);
}
