#pragma once

#include <cstdint>
#include <memory>

#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "rast/Font.h"
#include "rast/Types.h"

class rastShader;

// One laid-out run of text on one line: background, shadow, blur halo, the
// glyphs and a line-through, drawn in that order by one `draw`. Setters store;
// `redraw` lays out the quads; `draw` only issues them.
class VUREL_EXPORT rastTextString {
public:
    rastTextString() = default;
    rastTextString(rastTextString const& other) = default;
    rastTextString& operator=(rastTextString const& other) = default;

    void setText(std::wstring_view text) { text_.assign(text); }
    orm::basic_string<wchar_t> const& getText() const { return text_; }
    void setFont(std::shared_ptr<rastFont> font) { font_ = std::move(font); }
    std::shared_ptr<rastFont> const& getFont() const { return font_; }
    // The pen position: left end of the baseline, in toolkit units.
    void setPosition(osg::Vec2f const& position) { position_ = position; }
    osg::Vec2f const& getPosition() const { return position_; }

    void setColor(osg::Vec4f const& c) { color_ = c; }
    osg::Vec4f const& getColor() const { return color_; }
    void setBkgColor(osg::Vec4f const& c) { bkgColor_ = c; }
    osg::Vec4f const& getBkgColor() const { return bkgColor_; }
    void setShadowColor(osg::Vec4f const& c) { shadowColor_ = c; }
    osg::Vec4f const& getShadowColor() const { return shadowColor_; }
    void setBlurColor(osg::Vec4f const& c) { blurColor_ = c; }
    osg::Vec4f const& getBlurColor() const { return blurColor_; }
    void setLineThroughColor(osg::Vec4f const& c) { lineThroughColor_ = c; }
    osg::Vec4f const& getLineThroughColor() const { return lineThroughColor_; }
    void setLineThroughHeight(int h) { lineThroughHeight_ = h; }
    int getLineThroughHeight() const { return lineThroughHeight_; }
    void setLineThroughOffset(int o) { lineThroughOffset_ = o; }
    int getLineThroughOffset() const { return lineThroughOffset_; }
    void setShadowOffset(osg::Vec2i const& o) { shadowOffset_ = o; }
    osg::Vec2i const& getShadowOffset() const { return shadowOffset_; }

    int getWidth() const;

    // Lays the quads out from the current values.
    void redraw();
    void draw(rastShader const& shader) const;
    // Draws the glyphs in `color` instead of the string's own colour.
    void draw(rastShader const& shader, osg::Vec4f const& color) const;

    int getQuadCount() const { return static_cast<int>(quads_.size()); }

private:
    // The glyphs of the text, or their halo copies, shifted by (dx, dy).
    void addRun_(float dx, float dy, osg::Vec4f const& color, bool halo);
    void addHalo_();
    void addSolid_(float x, float y, float w, float h, osg::Vec4f const& color);
    void addQuad_(rastQuad const& quad, osg::Vec4f const& color, int32_t page);
    // One draw for each stretch of quads on the same atlas page.
    void drawRange_(rastShader const& shader, int first, int count, osg::Vec4f const* override) const;

    orm::basic_string<wchar_t> text_;
    std::shared_ptr<rastFont> font_;
    osg::Vec2f position_;
    osg::Vec4f color_{0, 0, 0, 1};
    osg::Vec4f bkgColor_, shadowColor_, blurColor_, lineThroughColor_;
    int lineThroughHeight_ = 1;
    int lineThroughOffset_ = 1;
    osg::Vec2i shadowOffset_;

    // Laid-out quads with their colours and atlas pages; the glyph run in the
    // string's own colour is [glyphsFirst_, glyphsFirst_ + glyphsCount_).
    orm::vector<rastQuad> quads_;
    orm::vector<osg::Vec4f> colors_;
    orm::vector<int32_t> pages_;
    int glyphsFirst_ = 0;
    int glyphsCount_ = 0;
};
