#include "Skin/LuaUtil.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "KeyboardButtons.h"
#include "Skin/StateInfo.h"
#include "orm/Log.h"
#include "orm/Utf8.h"

namespace luautil {

template <>
bool getValue<int>(lua_State* L, int index, int& out) {
    if (lua_type(L, index) != LUA_TNUMBER)
        return false;
    out = static_cast<int>(lua_tointeger(L, index));
    return true;
}

template <>
bool getValue<float>(lua_State* L, int index, float& out) {
    if (lua_type(L, index) != LUA_TNUMBER)
        return false;
    out = static_cast<float>(lua_tonumber(L, index));
    return true;
}

template <>
bool getValue<double>(lua_State* L, int index, double& out) {
    if (lua_type(L, index) != LUA_TNUMBER)
        return false;
    out = lua_tonumber(L, index);
    return true;
}

template <>
bool getValue<bool>(lua_State* L, int index, bool& out) {
    if (lua_type(L, index) != LUA_TBOOLEAN)
        return false;
    out = lua_toboolean(L, index) != 0;
    return true;
}

template <>
bool getValue<orm::basic_string<char>>(lua_State* L, int index, orm::basic_string<char>& out) {
    if (lua_type(L, index) != LUA_TSTRING)
        return false;
    size_t length = 0;
    char const* s = lua_tolstring(L, index, &length);
    out.assign(s, length);
    return true;
}

template <>
bool getValue<orm::basic_string<wchar_t>>(lua_State* L, int index, orm::basic_string<wchar_t>& out) {
    if (lua_type(L, index) != LUA_TSTRING)
        return false;
    size_t length = 0;
    char const* s = lua_tolstring(L, index, &length);
    out = orm::iconv_utf8_to_wchar(s, length);
    return true;
}

template <>
bool getValue<osg::Vec2i>(lua_State* L, int index, osg::Vec2i& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    getField(L, index, "horz", out.x);
    getField(L, index, "vert", out.y);
    return true;
}

template <>
bool getValue<osg::Recti>(lua_State* L, int index, osg::Recti& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    out = osg::Recti(0, 0, 0, 0);
    getField(L, index, "x1", out.min.x);
    getField(L, index, "y1", out.min.y);
    getField(L, index, "x2", out.max.x);
    getField(L, index, "y2", out.max.y);
    return true;
}

template <>
bool getValue<gui::Insets>(lua_State* L, int index, gui::Insets& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    getField(L, index, "left", out.left);
    getField(L, index, "top", out.top);
    getField(L, index, "right", out.right);
    getField(L, index, "bottom", out.bottom);
    return true;
}

template <>
bool getValue<osg::Vec4f>(lua_State* L, int index, osg::Vec4f& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    getField(L, index, "r", out.x);
    getField(L, index, "g", out.y);
    getField(L, index, "b", out.z);
    getField(L, index, "a", out.w);
    return true;
}

template <>
bool getValue<gui::Align>(lua_State* L, int index, gui::Align& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    orm::basic_string<char> name;
    gui::Align::Type type;
    // An unknown or absent type leaves the whole alignment alone, offset included.
    if (!getField(L, index, "type", name) || !gui::getAlignTypeByName(name, type))
        return true;
    out.setType(type);
    int offset = 0;
    if (getField(L, index, "offset", offset))
        out.setOffset(offset);
    return true;
}

namespace {

// A colour field that is no string is treated as absent: `out` keeps its value.
void readColorField(lua_State* L, int index, char const* key, osg::Vec4f& out) {
    osg::Vec4f color;
    if (getColorField(L, index, key, color))
        out = color;
}

// Colours whose default is not transparent black are written as a string even
// when transparent black, so that reading them back does not give the default.
void setOpaqueDefaultColorField(lua_State* L, char const* key, osg::Vec4f const& color) {
    osg::Vec4f const zero(0, 0, 0, 0);
    if (color == zero) {
        lua_pushstring(L, "0x00000000");
        lua_setfield(L, -2, key);
        return;
    }
    setColorField(L, key, color);
}

// The unset rectangle (all of the picture) is left out, so that it reads back unset.
void setRectField(lua_State* L, char const* key, osg::Recti const& rect) {
    if (!rect.isInverted())
        setField(L, key, rect);
}

rastFont::Blur toBlur(int value) {
    if (value >= rastFont::BlurNone && value <= rastFont::Blur2)
        return static_cast<rastFont::Blur>(value);
    orm_vlogf("VUREL", 16, "Invalid blur type!");
    return rastFont::BlurNone;
}

}  // namespace

template <>
bool getValue<gui::Bkg::Info>(lua_State* L, int index, gui::Bkg::Info& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    out = gui::Bkg::Info();
    getField(L, index, "file", out.file);
    getField(L, index, "rect", out.rect);
    getField(L, index, "insets", out.insets);
    out.colors.assign(gui::Bkg::CellCount, osg::Vec4f(0, 0, 0, 0));
    for (int i = 0; i < gui::Bkg::CellCount; ++i)
        readColorField(L, index, gui::Bkg::getCellName(i), out.colors[static_cast<size_t>(i)]);
    return true;
}

template <>
bool getValue<gui::Image::Info>(lua_State* L, int index, gui::Image::Info& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    out = gui::Image::Info();
    getField(L, index, "file", out.file);
    readColorField(L, index, "color", out.color);
    getField(L, index, "size", out.size);
    getField(L, index, "rect", out.rect);
    getField(L, index, "userTexSampler", out.userTexSampler);
    getField(L, index, "resizeToFill", out.resizeToFill);
    getField(L, index, "tileHorizontally", out.tileHorizontally);
    getField(L, index, "tileVertically", out.tileVertically);
    getField(L, index, "horzAlign", out.horzAlign);
    getField(L, index, "vertAlign", out.vertAlign);
    return true;
}

template <>
bool getValue<gui::Text::Info>(lua_State* L, int index, gui::Text::Info& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    out = gui::Text::Info();
    getField(L, index, "font", out.font);
    getField(L, index, "fontSize", out.fontSize);
    getField(L, index, "lineHeight", out.lineHeight);
    getField(L, index, "lineThroughHeight", out.lineThroughHeight);
    getField(L, index, "lineThroughOffset", out.lineThroughOffset);
    int blur = 0;
    if (getField(L, index, "blur", blur))
        out.blur = toBlur(blur);
    readColorField(L, index, "color", out.color);
    readColorField(L, index, "bkgColor", out.bkgColor);
    readColorField(L, index, "shadowColor", out.shadowColor);
    readColorField(L, index, "blurColor", out.blurColor);
    readColorField(L, index, "lineThroughColor", out.lineThroughColor);
    getField(L, index, "shadowOffset", out.shadowOffset);
    getField(L, index, "horzAlign", out.horzAlign);
    getField(L, index, "vertAlign", out.vertAlign);
    return true;
}

template <>
bool getValue<gui::skin::StateInfo*>(lua_State* L, int index, gui::skin::StateInfo*& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    StackGuard guard(L);
    lua_pushvalue(L, index);
    out = new gui::skin::StateInfo();
    out->loadFromLua(L);
    return true;
}

template <>
bool getValue<std::shared_ptr<gui::skin::StateInfo>>(lua_State* L, int index,
                                                     std::shared_ptr<gui::skin::StateInfo>& out) {
    gui::skin::StateInfo* info = nullptr;
    if (!getValue(L, index, info))
        return false;
    out.reset(info);
    return true;
}

template <>
bool getValue<gui::WindowBase::HotKey>(lua_State* L, int index, gui::WindowBase::HotKey& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    getField(L, index, "altPressed", out.altPressed);
    getField(L, index, "ctrlPressed", out.ctrlPressed);
    getField(L, index, "shiftPressed", out.shiftPressed);
    orm::basic_string<char> button;
    getField(L, index, "button", button);
    out.button = gui::getKeyboardButtonByName(button);
    return true;
}

template <>
void setValue<int>(lua_State* L, int const& value) {
    lua_pushinteger(L, value);
}

template <>
void setValue<float>(lua_State* L, float const& value) {
    lua_pushnumber(L, value);
}

template <>
void setValue<double>(lua_State* L, double const& value) {
    lua_pushnumber(L, value);
}

template <>
void setValue<bool>(lua_State* L, bool const& value) {
    lua_pushboolean(L, value ? 1 : 0);
}

template <>
void setValue<orm::basic_string<char>>(lua_State* L, orm::basic_string<char> const& value) {
    lua_pushlstring(L, value.data(), value.size());
}

template <>
void setValue<orm::basic_string<wchar_t>>(lua_State* L, orm::basic_string<wchar_t> const& value) {
    orm::basic_string<char> const utf8 = orm::iconv_wchar_to_utf8(value);
    lua_pushlstring(L, utf8.data(), utf8.size());
}

template <>
void setValue<osg::Vec2i>(lua_State* L, osg::Vec2i const& value) {
    lua_createtable(L, 0, 2);
    setField(L, "horz", value.x);
    setField(L, "vert", value.y);
}

template <>
void setValue<osg::Recti>(lua_State* L, osg::Recti const& value) {
    // An inverted rectangle (the unset one among them) is written as zeros.
    osg::Recti const r = value.isInverted() ? osg::Recti(0, 0, 0, 0) : value;
    lua_createtable(L, 0, 4);
    setField(L, "x1", r.min.x);
    setField(L, "y1", r.min.y);
    setField(L, "x2", r.max.x);
    setField(L, "y2", r.max.y);
}

template <>
void setValue<gui::Insets>(lua_State* L, gui::Insets const& value) {
    lua_createtable(L, 0, 4);
    setField(L, "left", value.left);
    setField(L, "top", value.top);
    setField(L, "right", value.right);
    setField(L, "bottom", value.bottom);
}

template <>
void setValue<osg::Vec4f>(lua_State* L, osg::Vec4f const& value) {
    lua_createtable(L, 0, 4);
    setField(L, "r", value.x);
    setField(L, "g", value.y);
    setField(L, "b", value.z);
    setField(L, "a", value.w);
}

template <>
void setValue<gui::Align>(lua_State* L, gui::Align const& value) {
    static char const* const names[] = {"min", "middle", "max", "stretch"};
    int const type = static_cast<int>(value.getType());
    char const* name = "";
    if (type >= 0 && type <= 3)
        name = names[type];
    else
        orm_vlogf("VUREL", 16, "Invalid align type!");
    lua_createtable(L, 0, 2);
    lua_pushstring(L, name);
    lua_setfield(L, -2, "type");
    setField(L, "offset", value.getOffset());
}

template <>
void setValue<gui::Bkg::Info>(lua_State* L, gui::Bkg::Info const& value) {
    lua_createtable(L, 0, 12);
    setField(L, "file", value.file);
    setRectField(L, "rect", value.rect);
    setField(L, "insets", value.insets);
    size_t const cells = std::min(value.colors.size(), size_t(gui::Bkg::CellCount));
    for (size_t i = 0; i < cells; ++i)
        setColorField(L, gui::Bkg::getCellName(static_cast<int>(i)), value.colors[i]);
}

template <>
void setValue<gui::Image::Info>(lua_State* L, gui::Image::Info const& value) {
    lua_createtable(L, 0, 10);
    setField(L, "file", value.file);
    setOpaqueDefaultColorField(L, "color", value.color);
    setField(L, "size", value.size);
    setRectField(L, "rect", value.rect);
    setField(L, "userTexSampler", static_cast<int>(value.userTexSampler));
    setField(L, "resizeToFill", value.resizeToFill);
    setField(L, "tileHorizontally", value.tileHorizontally);
    setField(L, "tileVertically", value.tileVertically);
    setField(L, "horzAlign", value.horzAlign);
    setField(L, "vertAlign", value.vertAlign);
}

template <>
void setValue<gui::Text::Info>(lua_State* L, gui::Text::Info const& value) {
    lua_createtable(L, 0, 14);
    setField(L, "font", value.font);
    setField(L, "fontSize", static_cast<int>(value.fontSize));
    setField(L, "lineHeight", static_cast<int>(value.lineHeight));
    setField(L, "lineThroughHeight", static_cast<int>(value.lineThroughHeight));
    setField(L, "lineThroughOffset", static_cast<int>(value.lineThroughOffset));
    setField(L, "blur", static_cast<int>(value.blur));
    setOpaqueDefaultColorField(L, "color", value.color);
    setColorField(L, "bkgColor", value.bkgColor);
    setColorField(L, "shadowColor", value.shadowColor);
    setColorField(L, "blurColor", value.blurColor);
    setColorField(L, "lineThroughColor", value.lineThroughColor);
    setField(L, "shadowOffset", value.shadowOffset);
    setField(L, "horzAlign", value.horzAlign);
    setField(L, "vertAlign", value.vertAlign);
}

template <>
void setValue<gui::skin::StateInfo>(lua_State* L, gui::skin::StateInfo const& value) {
    if (!value.hasBkg && !value.hasPicture && !value.hasText) {
        lua_pushnil(L);
        return;
    }
    lua_createtable(L, 0, 3);
    value.saveToLua(L);
}

template <>
void setValue<gui::WindowBase::HotKey>(lua_State* L, gui::WindowBase::HotKey const& value) {
    lua_createtable(L, 0, 4);
    setField(L, "altPressed", value.altPressed);
    setField(L, "ctrlPressed", value.ctrlPressed);
    setField(L, "shiftPressed", value.shiftPressed);
    char const* name = gui::getKeyboardButtonName(value.button);
    lua_pushstring(L, name ? name : "");
    lua_setfield(L, -2, "button");
}

bool getColor(lua_State* L, int index, osg::Vec4f& out) {
    if (lua_type(L, index) != LUA_TSTRING) {
        out = osg::Vec4f(0, 0, 0, 0);
        return false;
    }
    char const* text = lua_tostring(L, index);
    unsigned long const v = std::strtoul(text, nullptr, 16);
    auto channel = [v](int shift) { return static_cast<float>((v >> shift) & 0xFFu) / 255.0f; };
    out = osg::Vec4f(channel(24), channel(16), channel(8), channel(0));
    return true;
}

void setColor(lua_State* L, osg::Vec4f const& color) {
    auto byte = [](float c) { return static_cast<unsigned>(std::clamp(c * 255.0f, 0.0f, 255.0f)); };
    unsigned const r = byte(color.x), g = byte(color.y), b = byte(color.z), a = byte(color.w);
    if ((r | g | b | a) == 0) {
        lua_pushnil(L);
        return;
    }
    char text[16];
    std::snprintf(text, sizeof text, "0x%.2x%.2x%.2x%.2x", r, g, b, a);
    lua_pushstring(L, text);
}

bool getColorField(lua_State* L, int index, char const* key, osg::Vec4f& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    StackGuard guard(L);
    int const table = index < 0 && index > LUA_REGISTRYINDEX ? lua_gettop(L) + index + 1 : index;
    lua_pushstring(L, key);
    lua_gettable(L, table);
    if (lua_isnil(L, -1))
        return false;
    return getColor(L, -1, out);
}

void setColorField(lua_State* L, char const* key, osg::Vec4f const& color) {
    setColor(L, color);
    lua_setfield(L, -2, key);
}

}  // namespace luautil
