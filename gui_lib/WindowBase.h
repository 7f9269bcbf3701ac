#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "Container.h"

namespace gui {

class WindowHeader;
class WindowView;
class WindowsManager;

namespace skin {
class WindowData;
}

// The top of a widget tree, shown on one surface by its WindowsManager. It
// adds to a container what a top-level rectangle needs: a title header and a
// client view as children, dragging and resizing, hot keys, a stack of mouse
// cursors, overlay widgets drawn above everything, and tab focus. The kinds
// differ in the manager list they join when shown. Every window starts hidden.
class VUREL_EXPORT WindowBase : public Container {
public:
    static char const* const closeCallbackName;

    // A key with its modifiers; equal only when all four match.
    struct VUREL_EXPORT HotKey {
        KeyboardButton button = KeyNone;
        bool altPressed = false;
        bool ctrlPressed = false;
        bool shiftPressed = false;

        bool operator==(HotKey const&) const = default;
        int getModifierCount() const { return int(altPressed) + int(ctrlPressed) + int(shiftPressed); }
    };
    using HotKeyCallback = std::shared_ptr<std::function<void()>>;

    // Cursor ids of the resize arrows; their pictures are the application's.
    enum ResizeCursor : int32_t {
        ResizeCursorNone = 0,
        ResizeCursorDiagonalUp = 38,    // left and bottom, or right and top
        ResizeCursorVertical = 39,      // top or bottom
        ResizeCursorDiagonalDown = 40,  // left and top, or right and bottom
        ResizeCursorHorizontal = 41,    // left or right
    };
    // Sides being dragged during a resize.
    enum ResizeSide : int32_t { ResizeLeft = 1, ResizeRight = 2, ResizeTop = 4, ResizeBottom = 8 };

    WindowBase();
    ~WindowBase() override;

    WindowHeader* getHeader() const { return header_; }
    WindowView* getView() const { return view_; }
    // Hides the window and raises "window close".
    void close() { onClose_(); }
    void clear();
    void removeAllWidgets();
    void centerWindow();
    // The position moved so that the rectangle stays on screen, as far as it fits.
    static osg::Vec2i calcWindowPositionInsideScreen(osg::Vec2i const& position, osg::Vec2i const& size);

    // Widget and Container overrides.
    osg::Recti getClientRect() const override;
    osg::Vec2i calcSize() const override;
    void setLayout(LayoutHandler* layout) override;
    LayoutHandler* getLayout() const override;
    int getWidgetCount() const override;
    Widget* getWidget(int index) const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    void onMouseReleased() override;
    bool onKeyDown(KeyboardButton button, int value) override;
    bool onChar(KeyboardButton button, int value) override;
    bool onKeyUp(KeyboardButton button, int value) override;

    virtual void setSurfaceId(int surfaceId);
    virtual int getSurfaceId() const { return surfaceId_; }
    // Into the view; nothing without one.
    virtual void insertWidget(Widget* widget, int index = -1);
    virtual void removeWidget(Widget* widget);
    // Hides the window; it is deleted at the next gui::GUI::processMessages.
    virtual void kill();
    virtual void setHasCursor(bool hasCursor);
    virtual bool getHasCursor() const { return hasCursor_; }
    virtual void setDraggable(bool draggable) { draggable_ = draggable; }
    virtual bool getDraggable() const { return draggable_; }
    // Whether a drag that ends off screen puts the window back.
    virtual bool checkOutOfScreenOnDrag() const { return true; }
    virtual void setResizable(bool resizable) { resizable_ = resizable; }
    virtual bool getResizable() const { return resizable_; }
    virtual void setClipResizeCursor(bool clip) { clipResizeCursor_ = clip; }
    virtual bool getClipResizeCursor() const { return clipResizeCursor_; }
    // Runs every callback registered for exactly this key; answers whether one ran.
    virtual bool onHotKey(HotKey const& hotKey);
    virtual void addHotKeyCallback(HotKey const& hotKey, HotKeyCallback const& callback);
    virtual bool removeHotKeyCallback(HotKey const& hotKey, HotKeyCallback const& callback);
    // An embedded window lives inside another widget; the manager ignores it.
    virtual void setAsWidget(bool asWidget) { asWidget_ = asWidget; }
    virtual bool getAsWidget() const { return asWidget_; }
    virtual void setNextWidgetFocused();
    virtual void setPrevWidgetFocused();
    virtual void insertOverlayWidget(Widget* widget, int index = -1);
    virtual void removeOverlayWidget(Widget* widget);
    virtual int getOverlayWidgetCount() const { return static_cast<int>(overlayWidgets_.size()); }
    virtual Widget* getOverlayWidget(int index) const;
    virtual void pushMouseCursor(int cursorId);
    // Callers balance their pushes and pops.
    virtual void popMouseCursor();
    // -1 for a window without a cursor, 0 with an empty stack.
    virtual int getMouseCursor() const;

protected:
    // A window whose kill is queued only hides: the queued kill deletes it.
    void destroy_() override;
    void onSizeChanged_(osg::Vec2i const& size) override;
    void onTextChanged_(orm::basic_string<wchar_t> const& text) override;
    void updateSize_() override;
    void removeWidget_(Widget* widget) override;
    void draw_() override;
    void make_(GraphicCommands* commands) override;

    virtual void onHasCursorChanged_(bool hasCursor) { hasCursor_ = hasCursor; }
    virtual void onClose_();
    // Places the header and the view inside the insets.
    virtual void updateWidgets_();
    virtual void getSortedTabOrderedWidgets_(orm::vector<Widget*>& out);
    virtual int getResizeMask_(osg::Vec2i const& point) const;
    virtual int getResizeCursor_(int mask) const;

    // Makes the header and the view and inserts them, header first.
    void createHeaderAndView_();
    // Makes the window's painter with WindowData and loads `skinName`.
    void createWindowSkin_(char const* skinName);
    skin::WindowData const* getWindowData_() const;
    int getHeaderHeight_() const;
    WindowsManager* getManager_() const;

    int surfaceId_ = 0;
    WindowHeader* header_ = nullptr;
    WindowView* view_ = nullptr;
    orm::vector<WidgetHandler*> overlayWidgets_;
    bool hasCursor_ = true;
    bool draggable_ = true;
    bool resizable_ = false;
    bool resizeCursorPushed_ = false;
    int resizeBorder_ = 5;
    int resizeMask_ = 0;
    osg::Vec2i lastMousePosition_;
    bool asWidget_ = false;
    bool clipResizeCursor_ = false;
    orm::vector<std::pair<HotKey, HotKeyCallback>> hotKeyCallbacks_;
    std::deque<int> mouseCursors_;

private:
    void moveFocus_(bool forward);
    void resizeBy_(osg::Vec2i const& point);
    void popResizeCursor_();
    // The kill message holds a raw pointer, so it is queued once only.
    bool killQueued_ = false;
};

}  // namespace gui
