#include "LuaBinding.h"

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CallbackTypes.h"
#include "Container.h"
#include "GUI.h"
#include "KeyboardButtons.h"
#include "Panel.h"
#include "Skin/LuaUtil.h"
#include "WidgetHandler.h"
#include "WindowBase.h"
#include "WindowView.h"
#include "layouts/Layout.h"
#include "orm/Log.h"

namespace gui::lua {

namespace {

struct Property {
    PropertySetter setter;
    PropertyGetter getter;
};

struct Registry {
    std::unordered_map<std::string, WidgetFactory> kinds;
    std::unordered_map<std::string, std::vector<Property>> properties;
    std::unordered_map<std::string, LayoutFactory> layouts;
};

Registry& registry() {
    static Registry r;
    return r;
}

// A Lua function kept in the registry for as long as a callback holds it.
// The Lua state dies before the widgets, so releasing checks that it is
// still the GUI's state.
class LuaFunction {
public:
    LuaFunction(lua_State* L, int index) : L_(L) {
        lua_pushvalue(L, index);
        ref_ = luaL_ref(L, LUA_REGISTRYINDEX);
    }
    ~LuaFunction() {
        if (stateAlive())
            luaL_unref(L_, LUA_REGISTRYINDEX, ref_);
    }
    LuaFunction(LuaFunction const&) = delete;
    LuaFunction& operator=(LuaFunction const&) = delete;

    bool stateAlive() const {
        GUI const* gui = GUI::get();
        return gui && gui->getSkinLuaState() == L_;
    }

    // Calls the function with `pushArgs` pushing `argc` arguments; answers
    // the first result as a bool. Errors are logged, never raised.
    template <class PushArgs>
    bool call(int argc, PushArgs const& pushArgs) const {
        if (!stateAlive())
            return false;
        luautil::StackGuard guard(L_);
        lua_rawgeti(L_, LUA_REGISTRYINDEX, ref_);
        pushArgs(L_);
        if (lua_pcall(L_, argc, 1, 0) != 0) {
            char const* error = lua_tostring(L_, -1);
            orm_vlogf("VUREL", 64, "Resource callback failed! Error: %s", error ? error : "");
            return false;
        }
        return lua_toboolean(L_, -1) != 0;
    }

private:
    lua_State* L_;
    int ref_ = LUA_NOREF;
};

// Lua errors unwind with longjmp, which must not cross a C++ frame holding
// objects with destructors. Each function therefore reports its error here,
// returns, and the wrapper raises it from a frame that holds nothing.
struct Error {
    char text[256] = "";

    int set(char const* format, ...) __attribute__((format(printf, 2, 3))) {
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        return 0;
    }
};

using Impl = int (*)(lua_State* L, Error& error);

template <Impl impl>
int guarded(lua_State* L) {
    Error error;
    int const results = impl(L, error);
    if (error.text[0] != '\0')
        return luaL_error(L, "%s", error.text);
    return results;
}

void pushHandle(lua_State* L, Widget const& widget) { lua_pushlightuserdata(L, widget.handler()); }

// The living widget of the handle argument at `index`, or null with the error set.
Widget* argWidget(lua_State* L, int index, Error& error) {
    if (lua_type(L, index) != LUA_TLIGHTUSERDATA) {
        error.set("argument %d is no widget handle", index);
        return nullptr;
    }
    Widget* widget = WidgetHandler::get(static_cast<WidgetHandler*>(lua_touserdata(L, index)));
    if (!widget)
        error.set("argument %d: the widget is gone", index);
    return widget;
}

// The string argument at `index`, or null with the error set.
char const* argString(lua_State* L, int index, Error& error) {
    if (lua_type(L, index) != LUA_TSTRING) {
        error.set("argument %d is no string", index);
        return nullptr;
    }
    return lua_tostring(L, index);
}

bool argType(lua_State* L, int index, int type, Error& error) {
    if (lua_type(L, index) == type)
        return true;
    error.set("argument %d is no %s", index, lua_typename(L, type));
    return false;
}

int l_create(lua_State* L, Error& error) {
    char const* kind = argString(L, 1, error);
    if (!kind)
        return 0;
    auto it = registry().kinds.find(kind);
    if (it == registry().kinds.end())
        return error.set("unknown widget kind '%s'", kind);
    pushHandle(L, *it->second());
    return 1;
}

int l_kind(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget)
        return 0;
    lua_pushstring(L, widget->getWidgetType());
    return 1;
}

int l_set(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    char const* name = widget ? argString(L, 2, error) : nullptr;
    if (!name)
        return 0;
    bool applied = false;
    auto it = registry().properties.find(name);
    if (it == registry().properties.end()) {
        orm_vlogf("VUREL", 8, "Unknown property '%s' of %s", name, widget->getWidgetType());
    } else {
        bool found = false;
        for (Property const& p : it->second) {
            SetResult const r = p.setter(*widget, L, 3);
            if (r == SetResult::NotForThisWidget)
                continue;
            found = true;
            applied = r == SetResult::Applied;
            if (!applied)
                orm_vlogf("VUREL", 8, "Invalid value of property '%s' of %s", name, widget->getWidgetType());
            break;
        }
        if (!found)
            orm_vlogf("VUREL", 8, "Property '%s' does not apply to %s", name, widget->getWidgetType());
    }
    lua_pushboolean(L, applied ? 1 : 0);
    return 1;
}

int l_get(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    char const* name = widget ? argString(L, 2, error) : nullptr;
    if (!name)
        return 0;
    auto it = registry().properties.find(name);
    if (it != registry().properties.end())
        for (Property const& p : it->second)
            if (p.getter && p.getter(*widget, L))
                return 1;
    lua_pushnil(L);
    return 1;
}

// Puts `child` into `parent`: into a window's view, or a panel or view itself.
bool insertChild(Widget& parent, Widget& child) {
    if (auto* window = dynamic_cast<WindowBase*>(&parent)) {
        window->insertWidget(&child);
        return true;
    }
    if (auto* panel = dynamic_cast<Panel*>(&parent)) {
        panel->insertWidget(&child);
        return true;
    }
    if (auto* view = dynamic_cast<WindowView*>(&parent)) {
        view->insertWidget(&child);
        return true;
    }
    return false;
}

int l_insert(lua_State* L, Error& error) {
    Widget* parent = argWidget(L, 1, error);
    Widget* child = parent ? argWidget(L, 2, error) : nullptr;
    if (child && !insertChild(*parent, *child))
        error.set("a %s holds no children", parent->getWidgetType());
    return 0;
}

int l_setLayout(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget || !argType(L, 2, LUA_TTABLE, error))
        return 0;
    auto* container = dynamic_cast<Container*>(widget);
    if (!container)
        return error.set("a %s has no layout", widget->getWidgetType());
    orm::basic_string<char> kind;
    luautil::getField(L, 2, "kind", kind);
    auto it = registry().layouts.find(kind);
    if (it == registry().layouts.end())
        return error.set("unknown layout kind '%s'", kind.c_str());
    Layout* layout = it->second(L, 2);
    container->setLayout(layout ? layout->handler() : nullptr);
    return 0;
}

// A callback's Lua function, checked and kept; null with the error set.
std::shared_ptr<LuaFunction> argFunction(lua_State* L, int index, Error& error) {
    if (!argType(L, index, LUA_TFUNCTION, error))
        return nullptr;
    return std::make_shared<LuaFunction>(L, index);
}

int l_addCallback(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    char const* name = widget ? argString(L, 2, error) : nullptr;
    std::shared_ptr<LuaFunction> function = name ? argFunction(L, 3, error) : nullptr;
    if (!function)
        return 0;
    WidgetHandler* handle = widget->handler();
    widget->addWidgetCallback(getWidgetCallbackType(name),
                              std::make_shared<std::function<void()>>([function, handle] {
                                  function->call(1, [handle](lua_State* S) { lua_pushlightuserdata(S, handle); });
                              }));
    return 0;
}

int l_addMouseCallback(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    char const* name = widget ? argString(L, 2, error) : nullptr;
    if (!name)
        return 0;
    MouseCallbackType const type = getMouseCallbackType(name);
    if (type == MouseCallbackNone)
        return error.set("unknown mouse callback kind '%s'", name);
    std::shared_ptr<LuaFunction> function = argFunction(L, 3, error);
    if (!function)
        return 0;
    WidgetHandler* handle = widget->handler();
    widget->addMouseCallback(type, std::make_shared<std::function<void(int, int, int)>>(
                                       [function, handle](int x, int y, int button) {
                                           function->call(4, [=](lua_State* S) {
                                               lua_pushlightuserdata(S, handle);
                                               lua_pushinteger(S, x);
                                               lua_pushinteger(S, y);
                                               lua_pushinteger(S, button);
                                           });
                                       }));
    return 0;
}

int l_addKeyboardCallback(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    char const* name = widget ? argString(L, 2, error) : nullptr;
    if (!name)
        return 0;
    KeyboardCallbackType const type = getKeyboardCallbackType(name);
    if (type == KeyboardCallbackNone)
        return error.set("unknown keyboard callback kind '%s'", name);
    std::shared_ptr<LuaFunction> function = argFunction(L, 3, error);
    if (!function)
        return 0;
    WidgetHandler* handle = widget->handler();
    widget->addKeyboardCallback(type, std::make_shared<std::function<bool(KeyboardButton, int)>>(
                                          [function, handle](KeyboardButton key, int value) {
                                              return function->call(3, [=](lua_State* S) {
                                                  lua_pushlightuserdata(S, handle);
                                                  lua_pushstring(S, getKeyboardButtonName(key));
                                                  lua_pushinteger(S, value);
                                              });
                                          }));
    return 0;
}

int l_addHotKey(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget || !argType(L, 2, LUA_TTABLE, error))
        return 0;
    auto* window = dynamic_cast<WindowBase*>(widget);
    if (!window)
        return error.set("hot keys belong to windows, not to a %s", widget->getWidgetType());
    WindowBase::HotKey key;
    orm::basic_string<char> button;
    luautil::getField(L, 2, "button", button);
    key.button = getKeyboardButtonByName(button);
    if (key.button == KeyNone)
        return error.set("unknown key '%s'", button.c_str());
    luautil::getField(L, 2, "altPressed", key.altPressed);
    luautil::getField(L, 2, "ctrlPressed", key.ctrlPressed);
    luautil::getField(L, 2, "shiftPressed", key.shiftPressed);
    std::shared_ptr<LuaFunction> function = argFunction(L, 3, error);
    if (!function)
        return 0;
    WidgetHandler* handle = window->handler();
    window->addHotKeyCallback(key, std::make_shared<std::function<void()>>([function, handle] {
                                  function->call(1, [handle](lua_State* S) { lua_pushlightuserdata(S, handle); });
                              }));
    return 0;
}

int l_find(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget)
        return 0;
    orm::basic_string<wchar_t> name;
    luautil::getValue(L, 2, name);
    if (Widget* found = widget->findWidgetByName(name))
        pushHandle(L, *found);
    else
        lua_pushnil(L);
    return 1;
}

// The top of the widget's tree: the window it is in, or itself.
int l_root(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget)
        return 0;
    Widget* root = widget->getRoot();
    pushHandle(L, root ? *root : *widget);
    return 1;
}

int l_destroy(lua_State* L, Error&) {
    if (lua_type(L, 1) == LUA_TLIGHTUSERDATA)
        Widget::destroy(WidgetHandler::get(static_cast<WidgetHandler*>(lua_touserdata(L, 1))));
    return 0;
}

int l_close(lua_State* L, Error& error) {
    if (auto* window = dynamic_cast<WindowBase*>(argWidget(L, 1, error)))
        window->close();
    return 0;
}

// Hides the window and deletes it at the next frame, out of any callback.
int l_kill(lua_State* L, Error& error) {
    if (auto* window = dynamic_cast<WindowBase*>(argWidget(L, 1, error)))
        window->kill();
    return 0;
}

// The window behind a handle, as the C++ side receives it from the loader.
int l_window(lua_State* L, Error& error) {
    Widget* widget = argWidget(L, 1, error);
    if (!widget)
        return 0;
    auto* window = dynamic_cast<WindowBase*>(widget);
    if (!window)
        return error.set("a %s is no window", widget->getWidgetType());
    lua_pushlightuserdata(L, window);
    return 1;
}

int l_log(lua_State* L, Error& error) {
    char const* text = argString(L, 1, error);
    if (text)
        orm_vlogf("VUREL", lua_isnumber(L, 2) ? static_cast<int>(lua_tointeger(L, 2)) : 16, "%s", text);
    return 0;
}

}  // namespace

void registerWidgetKind(char const* kind, WidgetFactory factory) { registry().kinds[kind] = factory; }

void registerProperty(char const* property, PropertySetter setter, PropertyGetter getter) {
    registry().properties[property].push_back(Property{setter, getter});
}

void registerLayoutKind(char const* kind, LayoutFactory factory) { registry().layouts[kind] = factory; }

bool hasWidgetKind(char const* kind) { return registry().kinds.count(kind) != 0; }

void openBinding(lua_State* L) {
    static bool const registered = (registerBuiltInKinds(), true);
    (void)registered;
    static luaL_Reg const functions[] = {
        {"create", guarded<l_create>},
        {"kind", guarded<l_kind>},
        {"set", guarded<l_set>},
        {"get", guarded<l_get>},
        {"insert", guarded<l_insert>},
        {"setLayout", guarded<l_setLayout>},
        {"addCallback", guarded<l_addCallback>},
        {"addMouseCallback", guarded<l_addMouseCallback>},
        {"addKeyboardCallback", guarded<l_addKeyboardCallback>},
        {"addHotKey", guarded<l_addHotKey>},
        {"find", guarded<l_find>},
        {"root", guarded<l_root>},
        {"destroy", guarded<l_destroy>},
        {"close", guarded<l_close>},
        {"kill", guarded<l_kill>},
        {"window", guarded<l_window>},
        {"log", guarded<l_log>},
        {nullptr, nullptr},
    };
    luautil::StackGuard guard(L);
    luaL_register(L, "vurel", functions);
}

}  // namespace gui::lua
