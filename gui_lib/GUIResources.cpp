// Window resources: Lua files run through the loader script, which builds
// the widget tree through the "vurel" binding.

#include "GUI.h"
#include "LuaBinding.h"
#include "WindowBase.h"
#include "orm/Log.h"
#include "orm/Lua.h"

namespace gui {

namespace {

char const* const loaderScript = "./vurel/loader/CreateWindow.lua";

// Takes the error message off the stack.
void popError(lua_State* L, bool log) {
    char const* message = lua_tostring(L, -1);
    if (log)
        orm_vlogf("VUREL", 8, message ? "%s" : "(no message)", message);
    lua_pop(L, 1);
}

}  // namespace

WindowBase* GUI::createWindowFromResource(char const* resource) {
    lua_State* L = skinLuaState_;
    if (!L || !resource)
        return nullptr;
    if (ORM_lua_loadfile(L, loaderScript) != 0) {
        popError(L, false);
        return nullptr;
    }
    lua_pushstring(L, resource);
    if (ORM_lua_pcall(L, 1, 1, 0) != 0) {
        // The caller only sees null; the loader has already destroyed what it built.
        popError(L, false);
        return nullptr;
    }
    // The result stays on the stack, as the loader's contract has it.
    return static_cast<WindowBase*>(lua_touserdata(L, -1));
}

void GUI::loadWindowFromResource(char const* resource, WindowBase* window) {
    lua_State* L = skinLuaState_;
    if (!L || !resource)
        return;
    if (ORM_lua_loadfile(L, loaderScript) != 0)
        popError(L, true);
    lua_pushstring(L, resource);
    lua_pushlightuserdata(L, window ? window->handler() : nullptr);
    if (ORM_lua_pcall(L, 2, 0, 0) != 0)
        popError(L, true);
}

}  // namespace gui
