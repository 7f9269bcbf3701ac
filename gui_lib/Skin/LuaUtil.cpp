#include "Skin/LuaUtil.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

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
