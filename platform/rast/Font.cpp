#include "rast/Font.h"

#include <cstdint>

#include "rast/Renderer.h"

rastFixedWidthFont::rastFixedWidthFont(int charWidth, int lineHeight, int ascent, int descent)
    : charWidth_(charWidth), lineHeight_(lineHeight), ascent_(ascent), descent_(descent) {
    uint8_t white[4 * 4 * 4];
    for (uint8_t& b : white)
        b = 255;
    atlas_ = rastRenderer::get()->getBackend().createTexture(4, 4, rastPixelFormat::RGBA8, white);
    box_.advance = static_cast<float>(charWidth);
    box_.x = 0;
    box_.y = static_cast<float>(-ascent);
    box_.w = static_cast<float>(charWidth);
    box_.h = static_cast<float>(ascent - descent);
    box_.uMin = box_.vMin = 0.25f;
    box_.uMax = box_.vMax = 0.75f;
    space_ = box_;
    space_.w = space_.h = 0;
}

rastFixedWidthFont::~rastFixedWidthFont() {
    if (rastRenderer* r = rastRenderer::get())
        r->getBackend().destroyTexture(atlas_);
}

rastFont::Glyph const& rastFixedWidthFont::getGlyph(wchar_t ch) const {
    return (ch == L' ' || ch == L'\t') ? space_ : box_;
}

rastFontManager::~rastFontManager() = default;

std::shared_ptr<rastFont> rastFontManager::getFont(orm::basic_string<char> const& name, int /*size*/, int /*blur*/) {
    auto it = fixedFonts_.find(name);
    return it != fixedFonts_.end() ? it->second : nullptr;
}

void rastFontManager::registerFixedWidthFont(orm::basic_string<char> const& name, int charWidth, int lineHeight,
                                             int ascent, int descent) {
    fixedFonts_[name] = std::make_shared<rastFixedWidthFont>(charWidth, lineHeight, ascent, descent);
}

void rastFontManager::doRedraw() {
    for (auto& [name, font] : fixedFonts_)
        font->flushAtlas();
}
