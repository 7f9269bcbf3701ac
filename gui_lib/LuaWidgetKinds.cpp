// The toolkit's own widget kinds, their properties and the layout kinds, as
// window resources name them. Each widget family adds its rows here.

#include "LuaBinding.h"

#include "Button.h"
#include "CheckBox.h"
#include "GUI.h"
#include "ModalWindow.h"
#include "OverlayWindow.h"
#include "Panel.h"
#include "PopupWindow.h"
#include "RadioButton.h"
#include "Skin/LuaUtil.h"
#include "Skin/Skin.h"
#include "Static.h"
#include "SwitchButton.h"
#include "ToggleButton.h"
#include "Window.h"
#include "layouts/HorzLayout.h"
#include "layouts/VertLayout.h"

namespace gui::lua {

namespace {

template <class T>
Widget* make() {
    return new T();
}

// A setter for a value of type V on widgets of class W.
template <class W, class V>
PropertySetter setAs(void (*apply)(W&, V const&)) {
    return [apply](Widget& widget, lua_State* L, int index) {
        auto* w = dynamic_cast<W*>(&widget);
        if (!w)
            return SetResult::NotForThisWidget;
        V value{};
        if (!luautil::getValue<V>(L, index, value))
            return SetResult::WrongType;
        apply(*w, value);
        return SetResult::Applied;
    };
}

template <class W, class V>
PropertyGetter getAs(V (*read)(W const&)) {
    return [read](Widget& widget, lua_State* L) {
        auto const* w = dynamic_cast<W const*>(&widget);
        if (!w)
            return false;
        luautil::setValue<V>(L, read(*w));
        return true;
    };
}

using WString = orm::basic_string<wchar_t>;
using String = orm::basic_string<char>;

void registerWidgetProperties() {
    registerProperty("text", setAs<Widget, WString>(+[](Widget& w, WString const& v) { w.setText(v); }),
                     getAs<Widget, WString>(+[](Widget const& w) { return w.getText(); }));
    registerProperty("name", setAs<Widget, WString>(+[](Widget& w, WString const& v) { w.setName(v); }),
                     getAs<Widget, WString>(+[](Widget const& w) { return w.getName(); }));
    registerProperty("tooltip",
                     setAs<Widget, WString>(+[](Widget& w, WString const& v) { w.setTooltipText(v); }));
    registerProperty("resource",
                     setAs<Widget, String>(+[](Widget& w, String const& v) { w.setResourceString(v); }));
    registerProperty("position",
                     setAs<Widget, osg::Vec2i>(+[](Widget& w, osg::Vec2i const& v) { w.setPosition(v); }),
                     getAs<Widget, osg::Vec2i>(+[](Widget const& w) { return w.getPosition(); }));
    registerProperty("size", setAs<Widget, osg::Vec2i>(+[](Widget& w, osg::Vec2i const& v) { w.setSize(v); }),
                     getAs<Widget, osg::Vec2i>(+[](Widget const& w) { return w.getSize(); }));
    registerProperty("visible", setAs<Widget, bool>(+[](Widget& w, bool const& v) { w.setVisible(v); }),
                     getAs<Widget, bool>(+[](Widget const& w) { return w.getVisible(false); }));
    registerProperty("enabled", setAs<Widget, bool>(+[](Widget& w, bool const& v) { w.setEnabled(v); }),
                     getAs<Widget, bool>(+[](Widget const& w) { return w.getEnabled(); }));
    registerProperty("tabOrder", setAs<Widget, int>(+[](Widget& w, int const& v) { w.setTabOrder(v); }));
    registerProperty("zoom", setAs<Widget, float>(+[](Widget& w, float const& v) { w.setZoom(v); }));
    registerProperty("opacity", setAs<Widget, float>(+[](Widget& w, float const& v) { w.setOpacity(v); }));
    registerProperty("drawToTarget",
                     setAs<Widget, bool>(+[](Widget& w, bool const& v) { w.setDrawToTarget(v); }),
                     getAs<Widget, bool>(+[](Widget const& w) { return w.getDrawToTarget(); }));
    registerProperty("skin", setAs<Widget, String>(+[](Widget& w, String const& v) {
                         if (skin::Skin* s = w.getWidgetSkin())
                             s->load(v);
                     }));
}

void registerWindowProperties() {
    registerProperty("draggable",
                     setAs<WindowBase, bool>(+[](WindowBase& w, bool const& v) { w.setDraggable(v); }));
    registerProperty("resizable",
                     setAs<WindowBase, bool>(+[](WindowBase& w, bool const& v) { w.setResizable(v); }));
    registerProperty("hasCursor",
                     setAs<WindowBase, bool>(+[](WindowBase& w, bool const& v) { w.setHasCursor(v); }));
    registerProperty("surface",
                     setAs<WindowBase, int>(+[](WindowBase& w, int const& v) { w.setSurfaceId(v); }));
    registerProperty("centered", setAs<WindowBase, bool>(+[](WindowBase& w, bool const& v) {
                         if (v)
                             w.centerWindow();
                     }));
    registerProperty("zOrder", setAs<Window, int>(+[](Window& w, int const& v) { w.setZOrder(v); }));
    registerProperty("zOrder",
                     setAs<OverlayWindow, int>(+[](OverlayWindow& w, int const& v) { w.setZOrder(v); }));
    registerProperty("lockFlow",
                     setAs<ModalWindow, bool>(+[](ModalWindow& w, bool const& v) { w.setLockFlow(v); }));
}

// The tri-state value of toggles, check boxes and switch buttons: 0 off,
// 1 on, -1 mixed. Setting it from a resource raises no "widget change".
void registerButtonProperties() {
    registerProperty("state", setAs<ToggleButton, int>(+[](ToggleButton& w, int const& v) { w.setState(v); }),
                     getAs<ToggleButton, int>(+[](ToggleButton const& w) { return w.getState(); }));
}

// A linear layout from { gap = n, horzAlign = Align, vertAlign = Align }.
template <class L>
Layout* makeLinearLayout(lua_State* lua, int index) {
    int gap = 0;
    luautil::getField(lua, index, "gap", gap);
    auto* layout = new L(gap);
    Align horz = layout->getHorzAlign();
    Align vert = layout->getVertAlign();
    luautil::getField(lua, index, "horzAlign", horz);
    luautil::getField(lua, index, "vertAlign", vert);
    layout->setHorzAlign(horz);
    layout->setVertAlign(vert);
    return layout;
}

}  // namespace

void registerBuiltInKinds() {
    registerLayoutKind("horz", makeLinearLayout<HorzLayout>);
    registerLayoutKind("vert", makeLinearLayout<VertLayout>);
    registerWidgetKind("Panel", make<Panel>);
    registerWidgetKind("Window", make<Window>);
    registerWidgetKind("OverlayWindow", make<OverlayWindow>);
    registerWidgetKind("ModalWindow", make<ModalWindow>);
    registerWidgetKind("PopupWindow", make<PopupWindow>);
    registerWidgetKind("Button", make<Button>);
    registerWidgetKind("ToggleButton", make<ToggleButton>);
    registerWidgetKind("SwitchButton", make<SwitchButton>);
    registerWidgetKind("CheckBox", make<CheckBox>);
    registerWidgetKind("RadioButton", make<RadioButton>);
    registerWidgetKind("Static", make<Static>);
    registerProperty("angle", setAs<Static, double>(+[](Static& w, double const& v) { w.setAngle(v); }),
                     getAs<Static, double>(+[](Static const& w) { return w.getAngle(); }));
    registerProperty("pivot",
                     setAs<Static, osg::Vec2i>(+[](Static& w, osg::Vec2i const& v) { w.setPivotPoint(v); }));
    registerWidgetProperties();
    registerWindowProperties();
    registerButtonProperties();
}

}  // namespace gui::lua
