#pragma once

extern "C" {
#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>
}

#include "Export.h"

// Thin wrappers of the Lua 5.1 calls that open a state, load a file and call
// protected. They exist so that the toolkit has one place where Lua states are
// made and errors are reported.
// `label` names the state in messages about it.
VUREL_EXPORT lua_State* ORM_lua_open(char const* label = nullptr);
VUREL_EXPORT void ORM_lua_openlibs(lua_State* L);
// Answers 0 on success; otherwise the error message is on the stack.
VUREL_EXPORT int ORM_lua_loadfile(lua_State* L, char const* fileName);
VUREL_EXPORT int ORM_lua_pcall(lua_State* L, int nargs, int nresults, int errfunc);
VUREL_EXPORT void ORM_lua_close(lua_State* L);
