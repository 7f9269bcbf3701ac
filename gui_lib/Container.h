#pragma once

#include "Widget.h"

namespace gui {

class Layout;
class LayoutHandler;

// A widget that holds children through weak handles, routes the mouse to the
// child under it, keeps one focused child, and owns an optional layout.
// Children see an event first; the container raises its own callbacks after
// them, deepest first.
class VUREL_EXPORT Container : public Widget {
public:
    Container();
    ~Container() override;

    // Widget overrides.
    void getTabOrderedWidgets(orm::vector<Widget*>& out) override;
    Widget* getFocusedWidget() const override;
    bool getFocusable() const override { return true; }
    osg::Vec2i getMinSize() const override;
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i calcMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    void updateSize() override;
    Widget* findWidgetByName(orm::basic_string<wchar_t> const& name) override;
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) override;
    Widget* getWidgetAtScreenPoint(osg::Vec2i const& point) override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    bool onMouseWheel(osg::Vec2i const& point, int delta) override;
    void onMouseCursorMove(osg::Vec2i const& point) override;
    bool onKeyDown(KeyboardButton button, int value) override;
    bool onChar(KeyboardButton button, int value) override;
    bool onKeyUp(KeyboardButton button, int value) override;
    void setDirty(int flag) override;
    void doRedrawChildren() override;
    void redrawChildren() override;
    void drawChildren() override;
    void makeChildren(GraphicCommands* commands) override;
    void localize(LocalizationMap const& map) override;

    // The layout is owned from the moment it is set; null destroys the old one.
    virtual void setLayout(LayoutHandler* layout);
    virtual LayoutHandler* getLayout() const { return layout_; }
    virtual int getWidgetCount() const { return getWidgetCount_(); }
    virtual Widget* getWidget(int index) const { return getWidget_(index); }
    virtual void onWidgetDestroy(WidgetHandler* handle);
    virtual bool getGenerateMouseMoveCallbacks(osg::Vec2i const&) const { return true; }
    virtual bool getGenerateMouseDownCallbacks(osg::Vec2i const&, MouseButton) const { return true; }
    virtual bool getGenerateMouseDoubleClickCallbacks(osg::Vec2i const&, MouseButton) const { return true; }
    virtual bool getGenerateMouseUpCallbacks(osg::Vec2i const&, MouseButton) const { return true; }
    // Runs the layout now, or marks it for the next redraw.
    virtual void updateLayout(bool now);

    void copyParams(Container* target) const;
    WidgetHandler* getHoveredWidget() const { return hoveredWidget_; }

protected:
    friend class Widget;

    void parse_() override { parseChildren_(); }
    void makeParse_(GraphicCommands* commands) override;
    void redraw_() override;
    void onSizeChanged_(osg::Vec2i const& size) override;
    void onPositionChanged_(osg::Vec2i const& position) override;
    void onEnableChanged_(bool enabled) override;
    void onFocusChanged_(bool focused) override;
    void setFocusedWidget_(WidgetHandler* handle) override;

    virtual void parseChildren_();
    virtual void insertWidget_(Widget* widget, int index);
    virtual void removeWidget_(Widget* widget);
    virtual Widget* getWidget_(int index) const;
    virtual int getWidgetIndex_(Widget const* widget) const;
    virtual void removeAllWidgets_();
    virtual void clear_();
    virtual void deleteWidgets_();
    virtual int getWidgetCount_() const { return static_cast<int>(widgets_.size()); }
    virtual void onHoveredWidgetChanged_(WidgetHandler* handle, osg::Vec2i const& point);
    virtual WidgetHandler* getFocusedWidget_() const { return focusedWidget_; }
    virtual void resetWidgets_();

    void updateHoveredWidget_(osg::Vec2i const& point);
    Layout* getLayoutObject_() const;

    orm::vector<WidgetHandler*> widgets_;
    WidgetHandler* hoveredWidget_ = nullptr;
    WidgetHandler* focusedWidget_ = nullptr;
    LayoutHandler* layout_ = nullptr;
    bool layoutDirty_ = false;
};

}  // namespace gui
