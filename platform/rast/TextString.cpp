#include "rast/TextString.h"

#include "rast/Renderer.h"
#include "rast/Shader.h"

int rastTextString::getWidth() const { return font_ ? font_->getTextWidth(text_) : 0; }

void rastTextString::addQuad_(rastQuad const& quad, osg::Vec4f const& color, int32_t page) {
    quads_.push_back(quad);
    colors_.push_back(color);
    pages_.push_back(page);
}

void rastTextString::addSolid_(float x, float y, float w, float h, osg::Vec4f const& color) {
    osg::Vec2f const texel = font_->getSolidTexel();
    addQuad_(rastQuad{x, y, w, h, texel.x, texel.y, texel.x, texel.y}, color, 0);
}

void rastTextString::addRun_(float dx, float dy, osg::Vec4f const& color, bool halo) {
    float penX = position_.x + dx;
    float const baseY = position_.y + dy;
    wchar_t previous = 0;
    bool first = true;
    for (wchar_t ch : text_) {
        if (!first)
            penX += static_cast<float>(font_->getKerning(previous, ch));
        rastFont::Glyph const& plain = font_->getGlyph(ch);
        rastFont::Glyph const* g = halo ? font_->getHaloGlyph(ch) : &plain;
        if (g && g->w > 0 && g->h > 0)
            addQuad_(rastQuad{penX + g->x, baseY + g->y, g->w, g->h, g->uMin, g->vMin, g->uMax, g->vMax}, color,
                     g->page);
        penX += plain.advance;
        previous = ch;
        first = false;
    }
}

void rastTextString::addHalo_() {
    if (font_->hasHaloGlyphs()) {
        addRun_(0, 0, blurColor_, true);
        return;
    }
    // Without blurred glyphs the halo is the run offset by one pixel in the eight directions.
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (dx != 0 || dy != 0)
                addRun_(static_cast<float>(dx), static_cast<float>(dy), blurColor_, false);
}

void rastTextString::redraw() {
    quads_.clear();
    colors_.clear();
    pages_.clear();
    glyphsFirst_ = glyphsCount_ = 0;
    if (!font_ || text_.empty())
        return;

    float const width = static_cast<float>(getWidth());
    float const top = position_.y - static_cast<float>(font_->getAscent());
    float const height = static_cast<float>(font_->getAscent() - font_->getDescent());
    if (bkgColor_.w > 0)
        addSolid_(position_.x, top, width, height, bkgColor_);
    if (shadowColor_.w > 0)
        addRun_(static_cast<float>(shadowOffset_.x), static_cast<float>(shadowOffset_.y), shadowColor_, false);
    if (blurColor_.w > 0)
        addHalo_();
    glyphsFirst_ = static_cast<int>(quads_.size());
    addRun_(0, 0, color_, false);
    glyphsCount_ = static_cast<int>(quads_.size()) - glyphsFirst_;
    if (lineThroughColor_.w > 0 && lineThroughHeight_ > 0) {
        // Offset counts up from the baseline, to about the middle of lower-case letters.
        float const y = position_.y - static_cast<float>(font_->getAscent()) * 0.35f -
                        static_cast<float>(lineThroughOffset_);
        addSolid_(position_.x, y, width, static_cast<float>(lineThroughHeight_), lineThroughColor_);
    }
}

void rastTextString::drawRange_(rastShader const& shader, int first, int count, osg::Vec4f const* override) const {
    (void)shader;
    rastRenderer* renderer = rastRenderer::get();
    int const end = first + count;
    while (first < end) {
        int32_t const page = pages_[first];
        int stop = first + 1;
        while (stop < end && pages_[stop] == page)
            ++stop;
        rastDrawState state = renderer->makeDrawState(font_->getPageTexture(page), false);
        state.color = override ? *override : osg::Vec4f(1, 1, 1, 1);
        renderer->getBackend().drawQuads(state, quads_.data() + first, override ? nullptr : colors_.data() + first,
                                         stop - first);
        first = stop;
    }
}

void rastTextString::draw(rastShader const& shader) const {
    if (!font_ || quads_.empty())
        return;
    drawRange_(shader, 0, static_cast<int>(quads_.size()), nullptr);
}

void rastTextString::draw(rastShader const& shader, osg::Vec4f const& color) const {
    if (!font_ || quads_.empty())
        return;
    int const afterGlyphs = glyphsFirst_ + glyphsCount_;
    drawRange_(shader, 0, glyphsFirst_, nullptr);
    drawRange_(shader, glyphsFirst_, glyphsCount_, &color);
    drawRange_(shader, afterGlyphs, static_cast<int>(quads_.size()) - afterGlyphs, nullptr);
}
