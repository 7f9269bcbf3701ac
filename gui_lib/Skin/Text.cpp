#include "Skin/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "Skin/GraphicCommands.h"
#include "TextUtil.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/TextString.h"

namespace gui {

namespace {

using WString = orm::basic_string<wchar_t>;

constexpr wchar_t kEllipsis[] = L"...";
constexpr size_t kEllipsisLength = 3;

// Layout arithmetic runs in 64 bits so that absurd sizes from scripts
// saturate instead of overflowing.
int clampToInt(int64_t value) {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

int measure(rastFont const& face, std::wstring_view text) { return face.getTextWidth(text); }

template <class T>
void assignIfChanged(T& field, T const& value, bool& dirty) {
    if (field == value)
        return;
    field = value;
    dirty = true;
}

}  // namespace

// What the ellipsis step needs besides the line: kept in one place so that
// the callbacks capture a single pointer and stay off the heap.
struct Text::DivisionContext {
    rastFont const* face;
    int available;
    LineSink const* sink;
};

Text::Text() = default;

Text::~Text() { deleteStringsFrom_(0); }

void Text::set(Info const& info) {
    font = info.font;
    fontSize = info.fontSize;
    lineHeight = info.lineHeight;
    lineThroughHeight = info.lineThroughHeight;
    lineThroughOffset = info.lineThroughOffset;
    blur = info.blur;
    color = info.color;
    bkgColor = info.bkgColor;
    shadowColor = info.shadowColor;
    blurColor = info.blurColor;
    lineThroughColor = info.lineThroughColor;
    shadowOffset = info.shadowOffset;
    horzAlign = info.horzAlign;
    vertAlign = info.vertAlign;
    dirty = true;
}

void Text::setFont(orm::basic_string<char> const& file, int size, rastFont::Blur value) {
    if (font == file && fontSize == size && blur == value)
        return;
    font = file;
    fontSize = size;
    blur = value;
    dirty = true;
}

void Text::setColor(osg::Vec4f const& value) { assignIfChanged(color, value, dirty); }
void Text::setBkgColor(osg::Vec4f const& value) { assignIfChanged(bkgColor, value, dirty); }
void Text::setBlurColor(osg::Vec4f const& value) { assignIfChanged(blurColor, value, dirty); }
void Text::setShadowColor(osg::Vec4f const& value) { assignIfChanged(shadowColor, value, dirty); }
void Text::setShadowOffset(osg::Vec2i const& value) { assignIfChanged(shadowOffset, value, dirty); }
void Text::setLineThroughColor(osg::Vec4f const& value) { assignIfChanged(lineThroughColor, value, dirty); }

void Text::setAlign(Align2 const& value) {
    assignIfChanged(horzAlign, value.horz, dirty);
    assignIfChanged(vertAlign, value.vert, dirty);
}

void Text::setInsets(Insets const& value) { assignIfChanged(insets, value, dirty); }
void Text::setUseEllipsis(bool value) { assignIfChanged(useEllipsis, value, dirty); }
void Text::setWrapping(bool value) { assignIfChanged(wrapping, value, dirty); }

void Text::setLineHeight(int value) {
    lineHeight = value;
    dirty = true;
}

void Text::setLineThroughHeight(int value) {
    lineThroughHeight = value;
    dirty = true;
}

void Text::setLineThroughOffset(int value) {
    lineThroughOffset = value;
    dirty = true;
}

int Text::calcLineHeight() const {
    if (lineHeight != 0)
        return lineHeight;
    std::shared_ptr<rastFont> const face = fetchFont_();
    return face ? face->getLineHeight() : 0;
}

osg::Vec2i Text::calcSize(WString const& text, osg::Vec2i const& size) {
    if (text.empty())
        return {0, 0};
    std::shared_ptr<rastFont> const face = fetchFont_();
    if (!face)
        return {0, 0};

    int64_t lines = 0;
    int widest = 0;
    divideTextIntoLines_(text, size, *face, [&lines, &widest](WString const&, int width) {
        ++lines;
        widest = std::max(widest, width);
    });
    int64_t const x = int64_t(widest) + std::abs(int64_t(horzAlign.offset));
    int64_t const y = (lines - 1) * calcLineHeight_(*face) + face->getAscent() - face->getDescent() +
                      std::abs(int64_t(vertAlign.offset));
    return {clampToInt(x), clampToInt(y)};
}

void Text::redraw(WString const& text, osg::Vec2i const& size, bool deleteInvisibleLines) {
    if (!dirty)
        return;
    std::shared_ptr<rastFont> const face = fetchFont_();
    if (!face) {
        deleteStringsFrom_(0);
    } else {
        storeLines_(text, size, *face);
        // Lines that start below the bottom need no string.
        int const h = calcLineHeight_(*face);
        double const room = double(size.y) - double(vertAlign.offset);
        double const visible = h != 0 ? std::ceil(room / h) : (room > 0 ? HUGE_VAL : 0.0);
        int const visibleLines = !(visible > 0) ? 0
                                 : visible >= double(std::numeric_limits<int32_t>::max())
                                     ? std::numeric_limits<int32_t>::max()
                                     : static_cast<int>(visible);
        fitStrings_(visibleLines, deleteInvisibleLines);
        fillStrings_(size, face);
    }
    dirty = false;
    stringsDirty = true;
}

void Text::doRedraw() {
    if (!stringsDirty)
        return;
    for (rastTextString* string : strings)
        string->redraw();
    stringsDirty = false;
}

void Text::draw() const {
    rastRenderer* renderer = rastRenderer::get();
    if (!renderer || strings.empty())
        return;
    rastShader& shader = *renderer->getShader();
    shader.turnOnDrawQuads();
    for (rastTextString const* string : strings)
        string->draw(shader);
}

void Text::draw(osg::Vec4f const& textColor) const {
    rastRenderer* renderer = rastRenderer::get();
    if (!renderer || strings.empty())
        return;
    rastShader& shader = *renderer->getShader();
    shader.turnOnDrawQuads();
    for (rastTextString const* string : strings)
        string->draw(shader, textColor);
}

void Text::make(GraphicCommands* commands) const { make_(commands, nullptr); }

void Text::make(GraphicCommands* commands, osg::Vec4f const& textColor) const { make_(commands, &textColor); }

std::shared_ptr<rastFont> Text::fetchFont_() const {
    rastRenderer* renderer = rastRenderer::get();
    if (font.empty() || !renderer || !renderer->getFontManager())
        return nullptr;
    return renderer->getFontManager()->getFont(font, fontSize, blur);
}

int Text::calcLineHeight_(rastFont const& face) const { return lineHeight != 0 ? lineHeight : face.getLineHeight(); }

void Text::divideTextIntoLines_(WString const& text, osg::Vec2i const& size, rastFont const& face,
                                LineSink const& sink) {
    int64_t const available = int64_t(size.x) - horzAlign.offset - insets.right - insets.left;
    DivisionContext const context{&face, clampToInt(available), &sink};

    if (!wrapping) {
        // Only the first line of the text is shown; the rest is dropped.
        size_t const eol = text.find(L'\n');
        WString const* line = &text;
        if (eol != WString::npos) {
            firstLine_.assign(text, 0, eol);
            line = &firstLine_;
        }
        passWithEllipsis_(context, *line, measure(face, *line));
        return;
    }

    auto measureWord = [&face](wchar_t const* word, int length) {
        return measure(face, {word, static_cast<size_t>(length)});
    };
    auto output = [this, &context](WString const& line, int width) { passWithEllipsis_(context, line, width); };
    size_t start = 0;
    for (;;) {
        size_t const eol = text.find(L'\n', start);
        size_t const end = eol == WString::npos ? text.size() : eol;
        if (end == start) {
            firstLine_.clear();
            passWithEllipsis_(context, firstLine_, 0);
        } else {
            size_t const length = std::min<size_t>(end - start, std::numeric_limits<int32_t>::max());
            textutil::wrapText(text.data() + start, static_cast<int>(length), measureWord, context.available, output);
        }
        if (eol == WString::npos)
            return;
        start = eol + 1;
    }
}

void Text::passWithEllipsis_(DivisionContext const& context, WString const& line, int width) {
    if (!useEllipsis || width <= context.available) {
        (*context.sink)(line, width);
        return;
    }
    // Shorten in front of the dots until the line fits, or only the dots are left.
    ellipsisLine_.assign(line);
    ellipsisLine_.append(kEllipsis, kEllipsisLength);
    int shortened = measure(*context.face, ellipsisLine_);
    while (ellipsisLine_.size() > kEllipsisLength && shortened > context.available) {
        ellipsisLine_.erase(ellipsisLine_.size() - kEllipsisLength - 1, 1);
        shortened = measure(*context.face, ellipsisLine_);
    }
    (*context.sink)(ellipsisLine_, shortened);
}

void Text::storeLines_(WString const& text, osg::Vec2i const& size, rastFont const& face) {
    // Lines are overwritten in place so that their buffers are reused.
    size_t count = 0;
    divideTextIntoLines_(text, size, face, [this, &count](WString const& line, int) {
        if (count < textLines.size())
            textLines[count] = line;
        else
            textLines.push_back(line);
        ++count;
    });
    textLines.erase(textLines.begin() + static_cast<ptrdiff_t>(count), textLines.end());
}

void Text::fitStrings_(int visibleLines, bool deleteInvisibleLines) {
    size_t const lines = textLines.size();
    size_t const visible = static_cast<size_t>(std::max(visibleLines, 0));
    if (strings.size() < lines) {
        do {
            strings.push_back(new rastTextString());
        } while (strings.size() < lines && strings.size() < visible);
    } else if (strings.size() > lines) {
        deleteStringsFrom_(lines);
    }
    if (deleteInvisibleLines && strings.size() > visible)
        deleteStringsFrom_(visible);
}

void Text::deleteStringsFrom_(size_t count) {
    while (strings.size() > count) {
        delete strings.back();
        strings.pop_back();
    }
}

void Text::fillStrings_(osg::Vec2i const& size, std::shared_ptr<rastFont> const& face) {
    if (textLines.empty() || strings.empty())
        return;
    int const h = calcLineHeight_(*face);
    int const ascent = face->getAscent();

    // Only the lines that have strings take part in the vertical alignment.
    int top = 0, bottom = 0;
    vertAlign.calc(clampToInt(int64_t(strings.size()) * h),
                   clampToInt(int64_t(size.y) - insets.bottom - insets.top), top, bottom);
    int64_t const y = int64_t(top) + insets.top;
    int const areaWidth = clampToInt(int64_t(size.x) - insets.right - insets.left);

    for (size_t i = 0; i < strings.size(); ++i) {
        rastTextString& string = *strings[i];
        WString const& line = textLines[i];
        string.setText(line);
        string.setFont(face);
        string.setColor(color);
        string.setBkgColor(bkgColor);
        string.setShadowColor(shadowColor);
        string.setBlurColor(blurColor);
        string.setLineThroughColor(lineThroughColor);
        string.setLineThroughHeight(lineThroughHeight);
        string.setLineThroughOffset(lineThroughOffset);
        string.setShadowOffset(shadowOffset);

        int left = 0, right = 0;
        horzAlign.calc(measure(*face, line), areaWidth, left, right);
        int64_t const x = int64_t(insets.left) + left;
        int64_t const baseline = y + int64_t(i) * h + ascent;
        string.setPosition(osg::Vec2f(float(x), float(baseline)));
    }
}

void Text::make_(GraphicCommands* commands, osg::Vec4f const* textColor) const {
    if (!commands)
        return;
    if (strings.size() == 1 && strings.front()->getText().empty())
        return;
    commands->drawText(strings, textColor);
}

}  // namespace gui
