#pragma once

#include <functional>

#include "Export.h"
#include "orm/Lua.h"

namespace gui {

class Layout;
class Widget;

// The Lua side of window resources: a global table "vurel" of functions that
// build widget trees through the toolkit's real constructors and setters.
// Widget kinds, properties and layout kinds are entered in tables (the
// toolkit's own in LuaWidgetKinds.cpp); an application can add its own.
namespace lua {

using WidgetFactory = Widget* (*)();

enum class SetResult { Applied, WrongType, NotForThisWidget };
// Applies the Lua value at `index` to the widget.
using PropertySetter = std::function<SetResult(Widget& widget, lua_State* L, int index)>;
// Pushes the widget's value; false when the property is not for this widget.
using PropertyGetter = std::function<bool(Widget& widget, lua_State* L)>;
// Makes a layout from the parameter table at `index`.
using LayoutFactory = Layout* (*)(lua_State* L, int index);

VUREL_EXPORT void registerWidgetKind(char const* kind, WidgetFactory factory);
// Several setters may share a property name (for different widget classes);
// the first one that is for the widget applies.
VUREL_EXPORT void registerProperty(char const* property, PropertySetter setter, PropertyGetter getter = nullptr);
VUREL_EXPORT void registerLayoutKind(char const* kind, LayoutFactory factory);
VUREL_EXPORT bool hasWidgetKind(char const* kind);

// Creates the "vurel" table in `L`. The built-in kinds are entered on first use.
VUREL_EXPORT void openBinding(lua_State* L);

// Enters the toolkit's own widget and layout kinds; called once by openBinding.
void registerBuiltInKinds();

}  // namespace lua
}  // namespace gui
