#include "orm/Lua.h"

#include "orm/Log.h"

lua_State* ORM_lua_open(char const* label) {
    lua_State* L = luaL_newstate();
    if (!L)
        orm_vlogf("VUREL", 64, "Cannot open a Lua state for %s", label ? label : "(unnamed)");
    return L;
}

void ORM_lua_openlibs(lua_State* L) {
    if (L)
        luaL_openlibs(L);
}

int ORM_lua_loadfile(lua_State* L, char const* fileName) {
    if (!L)
        return LUA_ERRFILE;
    // luaL_loadfile reads standard input for a null name; a toolkit never wants that.
    if (!fileName) {
        lua_pushliteral(L, "cannot open a file without a name");
        return LUA_ERRFILE;
    }
    return luaL_loadfile(L, fileName);
}

int ORM_lua_pcall(lua_State* L, int nargs, int nresults, int errfunc) {
    if (!L)
        return LUA_ERRRUN;
    return lua_pcall(L, nargs, nresults, errfunc);
}

void ORM_lua_close(lua_State* L) {
    if (L)
        lua_close(L);
}
