#include "Skin/StateInfo.h"

#include "Skin/LuaUtil.h"

namespace gui::skin {

void StateInfo::loadFromLua(lua_State* L) {
    hasBkg = luautil::getField(L, -1, "bkg", bkg);
    hasPicture = luautil::getField(L, -1, "picture", picture);
    hasText = luautil::getField(L, -1, "text", text);
}

void StateInfo::saveToLua(lua_State* L) const {
    if (hasBkg)
        luautil::setField(L, "bkg", bkg);
    if (hasPicture)
        luautil::setField(L, "picture", picture);
    if (hasText)
        luautil::setField(L, "text", text);
}

}  // namespace gui::skin
