#pragma once

#include <memory>

#include "Align.h"
#include "Export.h"
#include "Skin/Bkg.h"
#include "Skin/Image.h"
#include "Skin/Text.h"
#include "WindowBase.h"
#include "orm/Lua.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"

namespace gui::skin {
class StateInfo;
}  // namespace gui::skin

// The one definition of the Lua forms of the toolkit's value types. Readers
// answer false for a value of the wrong type and leave `out` as it was (the
// Info structures are reset first, as documented in docs/skin-format.md);
// they never raise a Lua error and never leave anything on the stack.
namespace luautil {

// Restores the Lua stack top when it goes out of scope.
class VUREL_EXPORT StackGuard {
public:
    explicit StackGuard(lua_State* L) : L_(L), top_(L ? lua_gettop(L) : 0) {}
    ~StackGuard() {
        if (L_)
            lua_settop(L_, top_);
    }
    StackGuard(StackGuard const&) = delete;
    StackGuard& operator=(StackGuard const&) = delete;

private:
    lua_State* L_;
    int top_;
};

template <class T>
bool getValue(lua_State* L, int index, T& out);
template <class T>
void setValue(lua_State* L, T const& value);

template <> VUREL_EXPORT bool getValue<int>(lua_State* L, int index, int& out);
template <> VUREL_EXPORT bool getValue<float>(lua_State* L, int index, float& out);
template <> VUREL_EXPORT bool getValue<double>(lua_State* L, int index, double& out);
template <> VUREL_EXPORT bool getValue<bool>(lua_State* L, int index, bool& out);
template <> VUREL_EXPORT bool getValue<orm::basic_string<char>>(lua_State* L, int index, orm::basic_string<char>& out);
template <> VUREL_EXPORT bool getValue<orm::basic_string<wchar_t>>(lua_State* L, int index,
                                                                   orm::basic_string<wchar_t>& out);
template <> VUREL_EXPORT bool getValue<osg::Vec2i>(lua_State* L, int index, osg::Vec2i& out);
template <> VUREL_EXPORT bool getValue<osg::Recti>(lua_State* L, int index, osg::Recti& out);
template <> VUREL_EXPORT bool getValue<gui::Insets>(lua_State* L, int index, gui::Insets& out);
template <> VUREL_EXPORT bool getValue<osg::Vec4f>(lua_State* L, int index, osg::Vec4f& out);
template <> VUREL_EXPORT bool getValue<gui::Align>(lua_State* L, int index, gui::Align& out);
// The three Info readers reset `out` to its defaults before reading, so an
// absent key means the default, not the old value.
template <> VUREL_EXPORT bool getValue<gui::Bkg::Info>(lua_State* L, int index, gui::Bkg::Info& out);
template <> VUREL_EXPORT bool getValue<gui::Image::Info>(lua_State* L, int index, gui::Image::Info& out);
template <> VUREL_EXPORT bool getValue<gui::Text::Info>(lua_State* L, int index, gui::Text::Info& out);
// With a table: a new object that the caller owns; otherwise `out` is left alone.
template <> VUREL_EXPORT bool getValue<gui::skin::StateInfo*>(lua_State* L, int index, gui::skin::StateInfo*& out);
template <> VUREL_EXPORT bool getValue<std::shared_ptr<gui::skin::StateInfo>>(
    lua_State* L, int index, std::shared_ptr<gui::skin::StateInfo>& out);
template <> VUREL_EXPORT bool getValue<gui::WindowBase::HotKey>(lua_State* L, int index, gui::WindowBase::HotKey& out);

template <> VUREL_EXPORT void setValue<int>(lua_State* L, int const& value);
template <> VUREL_EXPORT void setValue<float>(lua_State* L, float const& value);
template <> VUREL_EXPORT void setValue<double>(lua_State* L, double const& value);
template <> VUREL_EXPORT void setValue<bool>(lua_State* L, bool const& value);
template <> VUREL_EXPORT void setValue<orm::basic_string<char>>(lua_State* L, orm::basic_string<char> const& value);
template <> VUREL_EXPORT void setValue<orm::basic_string<wchar_t>>(lua_State* L,
                                                                   orm::basic_string<wchar_t> const& value);
template <> VUREL_EXPORT void setValue<osg::Vec2i>(lua_State* L, osg::Vec2i const& value);
template <> VUREL_EXPORT void setValue<osg::Recti>(lua_State* L, osg::Recti const& value);
template <> VUREL_EXPORT void setValue<gui::Insets>(lua_State* L, gui::Insets const& value);
template <> VUREL_EXPORT void setValue<osg::Vec4f>(lua_State* L, osg::Vec4f const& value);
template <> VUREL_EXPORT void setValue<gui::Align>(lua_State* L, gui::Align const& value);
template <> VUREL_EXPORT void setValue<gui::Bkg::Info>(lua_State* L, gui::Bkg::Info const& value);
template <> VUREL_EXPORT void setValue<gui::Image::Info>(lua_State* L, gui::Image::Info const& value);
template <> VUREL_EXPORT void setValue<gui::Text::Info>(lua_State* L, gui::Text::Info const& value);
// Nil when the entry has none of its three parts.
template <> VUREL_EXPORT void setValue<gui::skin::StateInfo>(lua_State* L, gui::skin::StateInfo const& value);
template <> VUREL_EXPORT void setValue<gui::WindowBase::HotKey>(lua_State* L, gui::WindowBase::HotKey const& value);

// The colour string "0xRRGGBBAA" ("0x" optional). Anything but a string gives
// transparent black and false; a string that does not parse gives transparent black.
VUREL_EXPORT bool getColor(lua_State* L, int index, osg::Vec4f& out);
// Pushes the colour string, or nil for transparent black.
VUREL_EXPORT void setColor(lua_State* L, osg::Vec4f const& color);

// Reads field `key` of the table at `index` into `out`; false when the value
// is no table, the field is absent, or of the wrong type.
template <class T>
bool getField(lua_State* L, int index, char const* key, T& out) {
    if (lua_type(L, index) != LUA_TTABLE)
        return false;
    StackGuard guard(L);
    int const table = index < 0 && index > LUA_REGISTRYINDEX ? lua_gettop(L) + index + 1 : index;
    lua_pushstring(L, key);
    lua_gettable(L, table);
    return getValue<T>(L, -1, out);
}

VUREL_EXPORT bool getColorField(lua_State* L, int index, char const* key, osg::Vec4f& out);

// Sets field `key` of the table on top of the stack to `value`.
template <class T>
void setField(lua_State* L, char const* key, T const& value) {
    setValue<T>(L, value);
    lua_setfield(L, -2, key);
}

VUREL_EXPORT void setColorField(lua_State* L, char const* key, osg::Vec4f const& color);

}  // namespace luautil
