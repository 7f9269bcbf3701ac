#include "rast/TextString.h"

#include "rast/Renderer.h"
#include "rast/Shader.h"

int rastTextString::getWidth() const { return font_ ? font_->getTextWidth(text_) : 0; }

void rastTextString::addSolid_(float x, float y, float w, float h, osg::Vec4f const& color) {
    osg::Vec2f const texel = font_->getSolidTexel();
    rastQuad q;
    q.x = x;
    q.y = y;
    q.w = w;
    q.h = h;
    q.uMin = q.uMax = texel.x;
    q.vMin = q.vMax = texel.y;
    quads_.push_back(q);
    colors_.push_back(color);
}

void rastTextString::addRun_(float dx, float dy, osg::Vec4f const& color) {
    float penX = position_.x + dx;
    float const baseY = position_.y + dy;
    for (wchar_t ch : text_) {
        rastFont::Glyph const& g = font_->getGlyph(ch);
        if (g.w > 0 && g.h > 0) {
            quads_.push_back(rastQuad{penX + g.x, baseY + g.y, g.w, g.h, g.uMin, g.vMin, g.uMax, g.vMax});
            colors_.push_back(color);
        }
        penX += g.advance;
    }
}

void rastTextString::redraw() {
    quads_.clear();
    colors_.clear();
    glyphsFirst_ = glyphsCount_ = 0;
    if (!font_ || text_.empty())
        return;

    float const width = static_cast<float>(getWidth());
    float const top = position_.y - static_cast<float>(font_->getAscent());
    float const height = static_cast<float>(font_->getAscent() - font_->getDescent());
    if (bkgColor_.w > 0)
        addSolid_(position_.x, top, width, height, bkgColor_);
    if (shadowColor_.w > 0)
        addRun_(static_cast<float>(shadowOffset_.x), static_cast<float>(shadowOffset_.y), shadowColor_);
    if (blurColor_.w > 0) {
        // The halo: the run offset by one pixel in the eight directions.
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (dx != 0 || dy != 0)
                    addRun_(static_cast<float>(dx), static_cast<float>(dy), blurColor_);
    }
    glyphsFirst_ = static_cast<int>(quads_.size());
    addRun_(0, 0, color_);
    glyphsCount_ = static_cast<int>(quads_.size()) - glyphsFirst_;
    if (lineThroughColor_.w > 0 && lineThroughHeight_ > 0) {
        // Offset counts up from the baseline, to about the middle of lower-case letters.
        float const y = position_.y - static_cast<float>(font_->getAscent()) * 0.35f -
                        static_cast<float>(lineThroughOffset_);
        addSolid_(position_.x, y, width, static_cast<float>(lineThroughHeight_), lineThroughColor_);
    }
}

void rastTextString::drawRange_(rastShader const& shader, int first, int count, osg::Vec4f const* override) const {
    if (count <= 0)
        return;
    (void)shader;
    rastRenderer* renderer = rastRenderer::get();
    rastDrawState state = renderer->makeDrawState(font_->getAtlasTexture(), false);
    state.color = osg::Vec4f(1, 1, 1, 1);
    osg::Vec4f const* colors = colors_.data() + first;
    if (override) {
        state.color = *override;
        colors = nullptr;
    }
    renderer->getBackend().drawQuads(state, quads_.data() + first, colors, count);
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
