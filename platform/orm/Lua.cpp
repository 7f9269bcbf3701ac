#include "orm/Lua.h"

lua_State* ORM_lua_open() { return luaL_newstate(); }

void ORM_lua_openlibs(lua_State* L) {
    if (L)
        luaL_openlibs(L);
}

int ORM_lua_loadfile(lua_State* L, char const* fileName) {
    if (!L)
        return LUA_ERRFILE;
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
