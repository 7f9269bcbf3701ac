#pragma once

#include <functional>
#include <memory>

#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Vec2i.h"

namespace gui {
namespace skin {
class TooltipSkin;
}

class GraphicCommands;
class PopupWindow;
class Tooltip;
class TooltipUpdateTarget;
class Widget;
class WidgetHandler;
class Window;
class WindowBase;

// The windows of one surface. It knows which windows are shown, in four
// lists; decides which window gets a mouse or key message; and holds the
// mouse capture. gui::GUI offers every input message to the managers of all
// surfaces in id order until one takes it.
//
// Draw order, bottom to top: overlay windows, normal windows, modal windows,
// popups. A modal window blocks the normal windows below it; popups above it
// still take their own clicks.
class VUREL_EXPORT WindowsManager {
public:
    using MouseCursorCallback = std::function<void(bool, int, WindowBase*)>;
    using WindowList = orm::vector<WindowBase*>;
    using PopupList = orm::vector<PopupWindow*>;

    explicit WindowsManager(int surfaceId);
    ~WindowsManager();
    WindowsManager(WindowsManager const&) = delete;
    WindowsManager& operator=(WindowsManager const&) = delete;

    // The manager of a surface, through gui::GUI; null for an invalid id.
    static WindowsManager* get(int surfaceId);
    int getSurfaceId() const { return surfaceId_; }

    // Capture: while a widget holds it, every mouse message goes to it.
    void captureMouse(WidgetHandler* handle);
    // Only the captured widget's handle releases; a null or dead one releases whatever holds it.
    void releaseMouse(WidgetHandler* handle);
    WidgetHandler* getCapturedWidget() const { return capturedWidget_; }

    WindowBase* findWindowAtPoint(osg::Vec2i const& point) const;
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) const;
    // The last popup, else the last modal window, else the focused normal window on top.
    WindowBase* getActiveWindow() const;
    bool getHasCursorWindow() const;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const;
    // Moves the focus of the active window along its tab order; shift walks backwards.
    bool handleTabButton();
    void onWindowCursorChanged(WindowBase* window);
    // The one window of this surface that the mouse passes through; null for none.
    void setWindowTransparentForUserInput(Window* window);
    void setMouseCursorCallback(MouseCursorCallback callback);

    // Tooltips. A forced text shows wherever the mouse rests, with the forced
    // skin; otherwise the text of the widget under the mouse, with its own
    // tooltip skin or the default one.
    void forceTooltipText(orm::basic_string<wchar_t> const& text, skin::TooltipSkin const* skin);
    orm::basic_string<wchar_t> const& getTooltipText() const;
    // Gives the tooltip the text and skin to show; false when there is nothing to show.
    bool prepareTooltip();
    void setDefaultTooltipSkin(skin::TooltipSkin const* skin);
    Tooltip* getTooltip() const;

    // Input delivery; each answers whether a window took the message.
    bool onMouseDown(MouseButton button, bool isDouble);
    bool onMouseMove(osg::Vec2i const& position);
    bool onMouseUp(MouseButton button);
    bool onMouseWheel(int delta);
    bool onKeyDown(KeyboardButton button, int value);
    bool onKeyUp(KeyboardButton button, int value);
    bool onChar(KeyboardButton button, int value);

    // Called by the window kinds as they are shown and hidden. Windows
    // embedded as widgets are ignored.
    void showNormalWindow(WindowBase* window);
    void hideNormalWindow(WindowBase* window);
    void showModalWindow(WindowBase* window);
    void hideModalWindow(WindowBase* window);
    void showPopupWindow(PopupWindow* window);
    void hidePopupWindow(PopupWindow* window);
    void showOverlayWindow(WindowBase* window);
    void hideOverlayWindow(WindowBase* window);
    // Puts a normal window that gained the focus on top of its z-order.
    void bringWindowForward(WindowBase* window);
    // Drops every reference to a window that is being deleted.
    void forgetWindow(WindowBase* window);

    // Frame stages: rebuild the draw snapshots, parse, draw, record, mark all dirty.
    void rebuildHandles();
    void parse();
    void draw();
    void make(GraphicCommands* commands);
    void setAllWindowsDirty(int flag);

    bool hasWindows() const;
    WindowList const& getNormalWindows() const { return normalWindows_; }
    WindowList const& getModalWindows() const { return modalWindows_; }
    PopupList const& getPopupWindows() const { return popupWindows_; }
    WindowList const& getOverlayWindows() const { return overlayWindows_; }
    WindowBase* getHoveredWindow() const { return hoveredWindow_; }
    // Mouse buttons held now, as counted from presses and releases.
    int getPressedButtons() const { return pressedButtons_; }

private:
    // The application's cursor function and the windows reported to it.
    struct CursorHolder {
        MouseCursorCallback function;
        WindowList windows;
    };

    osg::Vec2i mousePosition_() const;
    void updateHoveredWindow_();
    void closePopups_(bool keepActive);
    void insertByZOrder_(WindowList& list, WindowBase* window);
    void releaseCapture_();
    void reportCursor_(WindowBase* window);
    void reportCursorRemoval_(WindowBase* window);
    template <class Visit>
    void forEachSnapshot_(Visit visit) const;

    int surfaceId_;
    WindowList normalWindows_;
    PopupList popupWindows_;
    WindowList modalWindows_;
    WindowList overlayWindows_;
    orm::vector<WidgetHandler*> normalHandles_;
    orm::vector<WidgetHandler*> popupHandles_;
    orm::vector<WidgetHandler*> modalHandles_;
    orm::vector<WidgetHandler*> overlayHandles_;
    // Set whenever a window list changes; the snapshots are rebuilt only then.
    bool handlesStale_ = true;
    WindowBase* hoveredWindow_ = nullptr;
    WidgetHandler* capturedWidget_ = nullptr;
    WidgetHandler* lastClickedWidget_ = nullptr;
    int pressedButtons_ = 0;
    // The first move after a press does not count as the mouse coming to rest.
    bool skipTooltipRestart_ = false;
    std::shared_ptr<CursorHolder> cursorHolder_;
    WindowBase* transparentWindow_ = nullptr;
    // The tooltip widget is owned here but held by its handle: shutdown may
    // delete it with every other widget before the manager goes.
    WidgetHandler* tooltip_ = nullptr;
    std::unique_ptr<skin::TooltipSkin> forcedTooltipSkin_;
    std::unique_ptr<skin::TooltipSkin> defaultTooltipSkin_;
    std::unique_ptr<TooltipUpdateTarget> tooltipUpdateTarget_;
    orm::basic_string<wchar_t> forcedTooltipText_;
};

}  // namespace gui
