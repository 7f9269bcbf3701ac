#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Align.h"
#include "Export.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"
#include "rast/Font.h"

class rastTextString;

namespace gui {

class GraphicCommands;

// One text laid out for a given size with one font and style: line breaks,
// wrapping, ellipsis and alignment, and one rastTextString per visible line.
// Setters only mark it dirty; `redraw` lays the lines out, `doRedraw` brings
// the strings up to date, `draw` and `make` issue them.
class VUREL_EXPORT Text {
public:
    // The style of a text as skins describe it.
    struct VUREL_EXPORT Info {
        bool operator==(Info const&) const = default;

        orm::basic_string<char> font;
        int32_t fontSize = 0;
        int32_t lineHeight = 0;  // 0: the font's own line height
        int32_t lineThroughHeight = 1;
        int32_t lineThroughOffset = 1;
        rastFont::Blur blur = rastFont::BlurNone;
        osg::Vec4f color{0, 0, 0, 1};
        osg::Vec4f bkgColor{0, 0, 0, 0};
        osg::Vec4f shadowColor{0, 0, 0, 0};
        osg::Vec4f blurColor{0, 0, 0, 0};
        osg::Vec4f lineThroughColor{0, 0, 0, 0};
        osg::Vec2i shadowOffset{0, 0};
        Align horzAlign{Align::Min};
        Align vertAlign{Align::Middle};
    };

    Text();
    ~Text();
    Text(Text const&) = delete;
    Text& operator=(Text const&) = delete;

    void set(Info const& info);
    void setFont(orm::basic_string<char> const& file, int size, rastFont::Blur blur);
    void setColor(osg::Vec4f const& value);
    void setBkgColor(osg::Vec4f const& value);
    void setBlurColor(osg::Vec4f const& value);
    void setShadowColor(osg::Vec4f const& value);
    void setShadowOffset(osg::Vec2i const& value);
    void setLineThroughColor(osg::Vec4f const& value);
    void setAlign(Align2 const& value);
    void setInsets(Insets const& value);
    void setUseEllipsis(bool value);
    void setWrapping(bool value);
    void setLineHeight(int value);
    void setLineThroughHeight(int value);
    void setLineThroughOffset(int value);
    void setDirty(bool value) { dirty = value; }

    Align2 getAlign() const { return Align2(horzAlign, vertAlign); }
    osg::Vec4f const& getBkgColor() const { return bkgColor; }
    osg::Vec4f const& getBlurColor() const { return blurColor; }
    osg::Vec4f const& getColor() const { return color; }
    Insets const& getInsets() const { return insets; }
    // The number of strings, which is the number of lines shown.
    int getLineCount() const { return static_cast<int>(strings.size()); }
    int getLineHeight() const { return lineHeight; }
    osg::Vec4f const& getLineThroughColor() const { return lineThroughColor; }
    int getLineThroughHeight() const { return lineThroughHeight; }
    int getLineThroughOffset() const { return lineThroughOffset; }
    osg::Vec4f const& getShadowColor() const { return shadowColor; }
    osg::Vec2i const& getShadowOffset() const { return shadowOffset; }
    // Every laid-out line, also those without a string.
    orm::vector<orm::basic_string<wchar_t>> const& getTextLines() const { return textLines; }
    bool getUseEllipsis() const { return useEllipsis; }
    bool getWrapping() const { return wrapping; }
    bool isDirty() const { return dirty; }
    // The strings of the visible lines, in line order.
    orm::vector<rastTextString*> const& getStrings() const { return strings; }

    // `lineHeight` when set, else the font's; 0 without a font.
    int calcLineHeight() const;
    // The pixel size `text` needs when laid out in the width of `size`,
    // without the insets; (0, 0) for an empty text or without a font.
    osg::Vec2i calcSize(orm::basic_string<wchar_t> const& text, osg::Vec2i const& size);

    // Lays `text` out for `size` when dirty. With `deleteInvisibleLines`,
    // lines below the bottom get no string.
    void redraw(orm::basic_string<wchar_t> const& text, osg::Vec2i const& size, bool deleteInvisibleLines);
    void doRedraw();
    void draw() const;
    // Draws the glyphs in `color` instead of the text's own colour.
    void draw(osg::Vec4f const& textColor) const;
    void make(GraphicCommands* commands) const;
    void make(GraphicCommands* commands, osg::Vec4f const& textColor) const;

private:
    using LineSink = std::function<void(orm::basic_string<wchar_t> const&, int)>;
    struct DivisionContext;

    std::shared_ptr<rastFont> fetchFont_() const;
    int calcLineHeight_(rastFont const& face) const;
    void divideTextIntoLines_(orm::basic_string<wchar_t> const& text, osg::Vec2i const& size, rastFont const& face,
                              LineSink const& sink);
    void passWithEllipsis_(DivisionContext const& context, orm::basic_string<wchar_t> const& line, int width);
    void storeLines_(orm::basic_string<wchar_t> const& text, osg::Vec2i const& size, rastFont const& face);
    void fitStrings_(int visibleLines, bool deleteInvisibleLines);
    void deleteStringsFrom_(size_t count);
    void fillStrings_(osg::Vec2i const& size, std::shared_ptr<rastFont> const& face);
    void make_(GraphicCommands* commands, osg::Vec4f const* textColor) const;

    orm::vector<orm::basic_string<wchar_t>> textLines;
    orm::vector<rastTextString*> strings;

    orm::basic_string<char> font;
    int32_t fontSize = 0;
    int32_t lineHeight = 0;
    int32_t lineThroughHeight = 1;
    int32_t lineThroughOffset = 1;
    rastFont::Blur blur = rastFont::BlurNone;
    osg::Vec4f color{0, 0, 0, 1};
    osg::Vec4f bkgColor{0, 0, 0, 0};
    osg::Vec4f shadowColor{0, 0, 0, 0};
    osg::Vec4f blurColor{0, 0, 0, 0};
    osg::Vec4f lineThroughColor{0, 0, 0, 0};
    osg::Vec2i shadowOffset{0, 0};
    Align horzAlign{Align::Min};
    Align vertAlign{Align::Middle};

    Insets insets;
    bool wrapping = false;
    bool useEllipsis = false;
    bool dirty = false;
    bool stringsDirty = false;

    // Scratch lines of the division, kept so that laying out again does not
    // allocate.
    orm::basic_string<wchar_t> firstLine_;
    orm::basic_string<wchar_t> ellipsisLine_;
};

}  // namespace gui
