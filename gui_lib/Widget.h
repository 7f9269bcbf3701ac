#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

#include "CallbackTypes.h"
#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"

namespace gui {

class GraphicCommands;
class WidgetHandler;

namespace skin {
class Skin;
class ShaderEffect;
}  // namespace skin

// The base of everything that can be seen: one rectangle with text, state
// flags, a skin that paints it, and lists of callbacks.
//
// Three protocols run through every widget:
// - change: a public setter compares and, only on a change, calls a protected
//   on...Changed_ virtual that stores, marks dirty and raises a callback;
// - dirty: a changed widget enters a class-wide list, and redrawAll brings
//   the list up to date once a frame; doRedrawAll then moves the results into
//   renderer objects;
// - draw: guards and clipping in fixed virtual steps (draw, drawModelView_,
//   drawClipped_, draw_), with make as the recording twin.
class VUREL_EXPORT Widget {
public:
    using MouseCallback = std::shared_ptr<std::function<void(int x, int y, int button)>>;
    using MouseWheelCallback = std::shared_ptr<std::function<bool(int x, int y, int delta)>>;
    using KeyboardCallback = std::shared_ptr<std::function<bool(KeyboardButton, int)>>;
    using WidgetCallback = std::shared_ptr<std::function<void()>>;
    using LocalizationMap = std::unordered_map<orm::basic_string<wchar_t>, orm::basic_string<wchar_t>>;

    // 0 marks the widget only; 1 also its direct children; 2 the whole subtree.
    enum DirtyFlag : int32_t { DirtySelf = 0, DirtyChildren = 1, DirtyAll = 2 };

    static char const* const changeCallbackName;
    static char const* const focusCallbackName;
    static char const* const positionCallbackName;
    static char const* const sizeCallbackName;

    Widget();

    // Calls destroy_ unless given null: the public way to kill a widget.
    static void destroy(Widget* widget);
    WidgetHandler* handler() const { return handler_; }
    void copyParams(Widget* target) const;
    // Brings every dirty widget up to date, then the render-side stage.
    static void redrawAll();
    static void doRedrawAll();
    // Widgets waiting for redraw and for doRedraw, for tests and statistics.
    static size_t getRedrawQueueSize();
    static size_t getDoRedrawQueueSize();

    virtual int getRootSurfaceId() const;
    virtual Widget* clone() const;
    virtual char const* getWidgetType() const { return "Widget"; }
    virtual int getInteractiveState() const;
    virtual int getInnerState() const { return 1; }
    virtual skin::Skin* getWidgetSkin() const { return skin_; }
    virtual void setTooltipSkin(skin::Skin const* skin);
    virtual skin::Skin* getTooltipSkin() const { return tooltipSkin_; }
    virtual void setParent(WidgetHandler* parent);
    virtual WidgetHandler* getParent() const { return parent_; }
    virtual void resetParent() { parent_ = nullptr; }
    virtual void detachFromParent();
    virtual Widget* getRoot() const;
    virtual Widget* getFocusedWidget() const { return const_cast<Widget*>(this); }
    virtual void setText(orm::basic_string<wchar_t> const& text);
    virtual orm::basic_string<wchar_t> const& getText() const { return text_; }
    virtual void setPosition(osg::Vec2i const& position);
    virtual osg::Vec2i const& getPosition() const { return position_; }
    virtual void setSize(osg::Vec2i const& size);
    virtual osg::Vec2i const& getSize() const { return size_; }
    virtual void updateSize() {}
    virtual osg::Vec2i getMinSize() const;
    virtual osg::Vec2i getMaxSize() const;
    virtual osg::Vec2i calcMaxSize() const { return getMaxSize(); }
    virtual osg::Vec2i getPrefSize() const;
    virtual osg::Vec2i calcSize() const;
    virtual osg::Recti getClientRect() const { return getClientRect_(); }
    virtual void setTabOrder(int order);
    virtual int getTabOrder() const { return tabOrder_; }
    virtual void getTabOrderedWidgets(orm::vector<Widget*>& out);
    virtual void setVisible(bool visible);
    virtual bool getVisible(bool recursive) const;
    virtual void setFocused(bool focused);
    virtual void setTabFocused() { setFocused(true); }
    virtual bool getFocused() const { return focused_; }
    virtual bool getFocusable() const { return false; }
    virtual void setEnabled(bool enabled);
    virtual bool getEnabled() const;
    virtual void setTooltipText(orm::basic_string<wchar_t> const& text) { tooltipText_ = text; }
    virtual orm::basic_string<wchar_t> const& getTooltipText() const { return tooltipText_; }
    virtual void setResourceString(orm::basic_string<char> const& s) { resourceString_ = s; }
    virtual orm::basic_string<char> const& getResourceString() const { return resourceString_; }
    virtual void setName(orm::basic_string<wchar_t> const& name) { name_ = name; }
    virtual orm::basic_string<wchar_t> const& getName() const { return name_; }
    virtual Widget* findWidgetByName(orm::basic_string<wchar_t> const& name);
    virtual void setZoom(float zoom);
    virtual float getZoom() const { return zoom_; }
    virtual void setOpacity(float opacity);
    virtual float getOpacity() const { return opacity_; }
    virtual Widget* getTooltipWidget(osg::Vec2i const& point) { return findWidgetAtScreenPoint(point); }
    virtual Widget* findWidgetAtScreenPoint(osg::Vec2i const& point);
    virtual Widget* getWidgetAtScreenPoint(osg::Vec2i const& point);
    virtual bool getScreenPointInside(osg::Vec2i const& point) const;
    virtual bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const;
    virtual osg::Vec2i screenToWidget(osg::Vec2i const& point) const;
    virtual osg::Vec2i widgetToScreen(osg::Vec2i const& point) const;
    // Positions are the surface's screen coordinates, not relative to the widget.
    virtual void onMouseMove(osg::Vec2i const& point);
    virtual void onMouseEnter(osg::Vec2i const& point);
    virtual void onMouseLeave(osg::Vec2i const& point);
    virtual void onMouseDown(osg::Vec2i const& point, MouseButton button);
    virtual void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button);
    virtual void onMouseUp(osg::Vec2i const& point, MouseButton button);
    virtual bool onMouseWheel(osg::Vec2i const& point, int delta);
    virtual void addMouseCallback(MouseCallbackType type, MouseCallback const& callback);
    virtual void removeMouseCallback(MouseCallbackType type, MouseCallback const& callback);
    virtual void addMouseWheelCallback(MouseWheelCallback const& callback);
    virtual void removeMouseWheelCallback(MouseWheelCallback const& callback);
    virtual void addKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback);
    virtual void removeKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback);
    virtual void addWidgetCallback(int id, WidgetCallback const& callback);
    virtual void removeWidgetCallback(int id, WidgetCallback const& callback);
    virtual void onMouseCursorMove(osg::Vec2i const&) {}
    virtual void onMouseReleased();
    virtual bool onKeyDown(KeyboardButton button, int value);
    virtual bool onChar(KeyboardButton button, int value);
    virtual bool onKeyUp(KeyboardButton button, int value);
    virtual void setDirty(int flag);
    virtual void setDirtySize(bool dirty) { dirtySize_ = dirty; }
    virtual bool getDirtySize() const { return dirtySize_; }
    virtual void doRedraw();
    virtual void doRedrawChildren() {}
    virtual void redraw();
    virtual void redrawChildren() {}
    virtual void draw();
    virtual void drawChildren() {}
    virtual void parse();
    virtual void make(GraphicCommands* commands);
    virtual void makeChildren(GraphicCommands*) {}
    virtual void makeParse(GraphicCommands* commands);
    virtual void setDrawToTarget(bool drawToTarget) { drawToTarget_ = drawToTarget; }
    virtual bool getDrawToTarget() const;
    virtual void localize(LocalizationMap const& map);
    virtual void setShaderEffect(skin::ShaderEffect* effect);
    virtual void setRedrawCallback(std::function<void()> callback) { redrawCallback_ = std::move(callback); }
    virtual void setDoRedrawCallback(std::function<void()> callback) { doRedrawCallback_ = std::move(callback); }
    virtual ~Widget();

    bool getDirty() const { return dirty_; }
    // For a widget drawn through a target: true when its whole picture is
    // stale; otherwise `damage` receives the part, in its own units, that
    // changes below it have made stale (unset when none). Forgets both.
    bool takeTargetDamage(osg::Recti& damage);

protected:
    virtual void destroy_();
    virtual void onParentChanged_(WidgetHandler* parent);
    virtual void onTextChanged_(orm::basic_string<wchar_t> const& text);
    virtual void onPositionChanged_(osg::Vec2i const& position);
    virtual void onSizeChanged_(osg::Vec2i const& size);
    virtual void onVisibleChanged_(bool visible);
    virtual void onFocusChanged_(bool focused);
    virtual void onEnableChanged_(bool enabled);
    virtual void onZoomChanged_(float zoom);
    virtual void onChildBecomeDirty_(Widget* child);
    virtual osg::Vec2i validateSize_(osg::Vec2i const& size) const;
    virtual osg::Recti getClientRect_() const;
    virtual void setFocusedWidget_(WidgetHandler*) {}
    virtual osg::Vec2i getTargetPosition_() const;
    virtual void beginClip_();
    virtual void endClip_();
    virtual osg::Recti getClipRect_() const;
    virtual void drawModelView_();
    virtual void drawClipped_();
    virtual void draw_();
    virtual void drawFocusRect_();
    virtual void doRedraw_();
    virtual void redraw_();
    virtual void parse_() {}
    virtual void make_(GraphicCommands* commands);
    virtual void makeModelView_(GraphicCommands* commands);
    virtual void makeClipped_(GraphicCommands* commands);
    virtual void makeBeginClip_(GraphicCommands* commands);
    virtual void makeEndClip_(GraphicCommands* commands);
    virtual void makeFocusRect_(GraphicCommands* commands);
    virtual void makeParse_(GraphicCommands*) {}
    virtual void updateSize_();
    virtual int getInteractiveState_(bool hot, bool down) const;
    virtual void onChange_();
    virtual void callMouseCallbacks_(MouseCallbackType type, int x, int y, int button);
    virtual bool callKeyboardCallbacks_(KeyboardCallbackType type, KeyboardButton key, int value);
    virtual void callWidgetCallbacks_(int id);

    osg::Vec2i clampSize_(osg::Vec2i const& size) const;
    // The container of this widget, or null.
    class Container* getParentContainer_() const;
    // Makes the skin, owned from now on; the constructor of each widget class calls it.
    void setSkin_(skin::Skin* skin);
    // Enters the redraw list and tells the parents, without counting as a
    // change of this widget's own look.
    void markDirty_();
    // The nearest widget above that draws through a target, and the origin
    // of this widget's parent in that target's units; null when none.
    Widget* findTargetOwner_(osg::Vec2i& parentOrigin) const;
    // Marks this widget's present rectangle stale in the target it is drawn into.
    void damageOwnerTarget_();

    WidgetHandler* handler_ = nullptr;
    WidgetHandler* parent_ = nullptr;
    orm::basic_string<wchar_t> text_;
    osg::Vec2i position_;
    osg::Vec2i size_;
    int tabOrder_ = 0;
    bool dirty_ = true;
    bool dirtySize_ = true;
    bool visible_ = true;
    bool focused_ = false;
    bool enabled_ = true;
    float zoom_ = 1.0f;
    float opacity_ = 1.0f;
    bool drawToTarget_ = false;
    bool doRedrawDirty_ = true;
    // Set by setDirty: the widget's own look changed, not only a child's.
    bool ownChange_ = true;
    // What of this widget's target is stale; a new target is drawn whole.
    osg::Recti targetDamage_;
    bool targetDamageAll_ = true;
    // The skin's measure, kept until the widget's look or size changes.
    mutable osg::Vec2i skinSize_;
    mutable bool skinSizeValid_ = false;
    skin::Skin* skin_ = nullptr;
    skin::Skin* tooltipSkin_ = nullptr;
    skin::Skin* debugSkin_ = nullptr;
    orm::basic_string<wchar_t> tooltipText_;
    orm::basic_string<wchar_t> name_;
    orm::basic_string<char> resourceString_;
    std::unordered_map<int, orm::vector<MouseCallback>> mouseCallbacks_;
    orm::vector<MouseWheelCallback> mouseWheelCallbacks_;
    std::unordered_map<int, orm::vector<KeyboardCallback>> keyboardCallbacks_;
    std::unordered_map<int, orm::vector<WidgetCallback>> widgetCallbacks_;
    std::function<void()> redrawCallback_;
    std::function<void()> doRedrawCallback_;

private:
    // Entry of the dirty list: a widget and whether it is still alive.
    using RedrawEntry = std::pair<Widget*, bool>;
    static orm::vector<RedrawEntry>& widgetsToRedraw_();
    static orm::vector<RedrawEntry>& widgetsAddedDuringRedraw_();
    static orm::vector<Widget*>& widgetsToDoRedraw_();
    static bool redrawingAll_;
    void enterRedrawList_();
};

}  // namespace gui
