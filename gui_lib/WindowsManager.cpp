#include "WindowsManager.h"

#include "Skin/TooltipSkin.h"
#include "Tooltip.h"

#include <algorithm>

#include <boost/container/small_vector.hpp>

#include "Application.h"
#include "GUI.h"
#include "OverlayWindow.h"
#include "PopupWindow.h"
#include "WidgetHandler.h"
#include "Window.h"

namespace gui {

namespace {

template <class List, class T>
bool contains(List const& list, T const* item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

// Erases keeping the order of the others; answers whether it was there.
template <class List, class T>
bool removeFrom(List& list, T const* item) {
    auto it = std::find(list.begin(), list.end(), item);
    if (it == list.end())
        return false;
    list.erase(it);
    return true;
}

int zOrderOf(WindowBase const* window) {
    if (auto const* normal = dynamic_cast<Window const*>(window))
        return normal->getZOrder();
    if (auto const* overlay = dynamic_cast<OverlayWindow const*>(window))
        return overlay->getZOrder();
    return 0;
}

// The widget of a handle when it is alive and enabled.
Widget* enabledWidget(WidgetHandler* handle) {
    Widget* widget = WidgetHandler::get(handle);
    return widget && widget->getEnabled() ? widget : nullptr;
}

bool keyPressed(KeyboardButton a, KeyboardButton b) {
    Application const* app = Application::get();
    return app && (app->isKeyPressed(a) || app->isKeyPressed(b));
}

template <class List>
void fillHandles(List const& windows, orm::vector<WidgetHandler*>& handles) {
    handles.clear();
    for (WindowBase* window : windows)
        handles.push_back(window->handler());
}

}  // namespace

WindowsManager::WindowsManager(int surfaceId)
    : surfaceId_(surfaceId), cursorHolder_(std::make_shared<CursorHolder>()) {
    auto* tooltip = new Tooltip(this);
    tooltip_ = tooltip->handler();
    forcedTooltipSkin_ = std::make_unique<skin::TooltipSkin>(nullptr);
    defaultTooltipSkin_ = std::make_unique<skin::TooltipSkin>(nullptr);
    tooltip->getWidgetSkin()->copyTo(forcedTooltipSkin_.get());
    tooltip->getWidgetSkin()->copyTo(defaultTooltipSkin_.get());
    tooltipUpdateTarget_ = std::make_unique<TooltipUpdateTarget>(tooltip, this);
}

// The tooltip widget died with all the others in WidgetHandler::shutdown,
// which runs before the managers go; its handle must not be asked here.
WindowsManager::~WindowsManager() = default;

Tooltip* WindowsManager::getTooltip() const { return static_cast<Tooltip*>(WidgetHandler::get(tooltip_)); }

void WindowsManager::forceTooltipText(orm::basic_string<wchar_t> const& text, skin::TooltipSkin const* skin) {
    forcedTooltipText_ = text;
    if (skin)
        skin->copyTo(forcedTooltipSkin_.get());
}

orm::basic_string<wchar_t> const& WindowsManager::getTooltipText() const {
    if (!forcedTooltipText_.empty() || !hoveredWindow_)
        return forcedTooltipText_;
    Widget const* widget = hoveredWindow_->getTooltipWidget(mousePosition_());
    if (widget && !widget->getTooltipText().empty())
        return widget->getTooltipText();
    return forcedTooltipText_;
}

bool WindowsManager::prepareTooltip() {
    Tooltip* tooltip = getTooltip();
    if (!tooltip)
        return false;
    if (!forcedTooltipText_.empty()) {
        forcedTooltipSkin_->copyTo(tooltip->getWidgetSkin());
        tooltip->setText(forcedTooltipText_);
        return true;
    }
    if (!hoveredWindow_)
        return false;
    Widget const* widget = hoveredWindow_->getTooltipWidget(mousePosition_());
    if (!widget || widget->getTooltipText().empty())
        return false;
    skin::Skin const* skin = widget->getTooltipSkin();
    (skin ? skin : defaultTooltipSkin_.get())->copyTo(tooltip->getWidgetSkin());
    tooltip->setText(widget->getTooltipText());
    return true;
}

void WindowsManager::setDefaultTooltipSkin(skin::TooltipSkin const* skin) {
    if (skin)
        skin->copyTo(defaultTooltipSkin_.get());
}

WindowsManager* WindowsManager::get(int surfaceId) {
    GUI* gui = GUI::get();
    return gui ? gui->getWindowsManager(surfaceId) : nullptr;
}

bool WindowsManager::hasWindows() const {
    return !normalWindows_.empty() || !popupWindows_.empty() || !modalWindows_.empty() || !overlayWindows_.empty();
}

osg::Vec2i WindowsManager::mousePosition_() const {
    GUI const* gui = GUI::get();
    return gui ? gui->getMousePosition(surfaceId_) : osg::Vec2i();
}

// ---------------------------------------------------------------- queries

WindowBase* WindowsManager::findWindowAtPoint(osg::Vec2i const& point) const {
    for (size_t i = popupWindows_.size(); i-- > 0;) {
        PopupWindow* popup = popupWindows_[i];
        if (popup->getHasCursor() && popup->getScreenPointInside(point))
            return popup;
    }
    // A modal window blocks everything below it, wherever the point is.
    if (!modalWindows_.empty())
        return modalWindows_.back();
    for (size_t i = normalWindows_.size(); i-- > 0;) {
        WindowBase* window = normalWindows_[i];
        if (window != transparentWindow_ && window->getHasCursor() && window->getScreenPointInside(point))
            return window;
    }
    // Overlay windows never take the mouse.
    return nullptr;
}

Widget* WindowsManager::findWidgetAtScreenPoint(osg::Vec2i const& point) const {
    Widget* widget = findWindowAtPoint(point);
    if (!widget)
        return nullptr;
    // Down the tree until a widget answers itself.
    Widget* found = widget->findWidgetAtScreenPoint(point);
    while (found && found != widget) {
        widget = found;
        found = widget->findWidgetAtScreenPoint(point);
    }
    return found;
}

WindowBase* WindowsManager::getActiveWindow() const {
    if (!popupWindows_.empty())
        return popupWindows_.back();
    if (!modalWindows_.empty())
        return modalWindows_.back();
    for (size_t i = normalWindows_.size(); i-- > 0;)
        if (normalWindows_[i]->getFocused())
            return normalWindows_[i];
    return nullptr;
}

bool WindowsManager::getHasCursorWindow() const {
    auto hasCursor = [](WindowBase const* w) { return w->getHasCursor(); };
    return std::any_of(modalWindows_.begin(), modalWindows_.end(), hasCursor) ||
           std::any_of(popupWindows_.begin(), popupWindows_.end(), hasCursor) ||
           std::any_of(normalWindows_.begin(), normalWindows_.end(), hasCursor);
}

bool WindowsManager::getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const {
    if (!modalWindows_.empty())
        return true;
    WindowBase const* window = findWindowAtPoint(point);
    return window && window->getHasMouseInputAtScreenPoint(point);
}

// ---------------------------------------------------------------- capture

void WindowsManager::captureMouse(WidgetHandler* handle) {
    if (handle == capturedWidget_)
        return;
    WidgetHandler* const old = capturedWidget_;
    // Stored first, so that the old holder may call releaseMouse without effect.
    capturedWidget_ = handle;
    if (Widget* widget = WidgetHandler::get(old))
        widget->onMouseReleased();
}

void WindowsManager::releaseMouse(WidgetHandler* handle) {
    if (WidgetHandler::get(handle) && handle != capturedWidget_)
        return;
    releaseCapture_();
}

void WindowsManager::releaseCapture_() {
    WidgetHandler* const old = capturedWidget_;
    capturedWidget_ = nullptr;
    if (Widget* widget = WidgetHandler::get(old))
        widget->onMouseReleased();
}

// ---------------------------------------------------------------- hovering and popups

void WindowsManager::updateHoveredWindow_() {
    osg::Vec2i const point = mousePosition_();
    WindowBase* const found = findWindowAtPoint(point);
    if (found == hoveredWindow_)
        return;
    WindowBase* const old = hoveredWindow_;
    WidgetHandler* const foundHandle = found ? found->handler() : nullptr;
    hoveredWindow_ = found;
    if (old)
        old->onMouseLeave(point);
    // A leave handler may have moved the hover on already.
    if (WidgetHandler::get(foundHandle) && hoveredWindow_ == found)
        found->onMouseEnter(point);
}

void WindowsManager::closePopups_(bool keepActive) {
    PopupList const popups = popupWindows_;
    for (PopupWindow* popup : popups) {
        if (!contains(popupWindows_, popup))
            continue;
        if (keepActive && popup->getActive())
            continue;
        popup->setVisible(false);
    }
}

void WindowsManager::insertByZOrder_(WindowList& list, WindowBase* window) {
    int const z = zOrderOf(window);
    // Among equal z-orders the newest goes on top.
    auto it = std::find_if(list.begin(), list.end(), [z](WindowBase* w) { return zOrderOf(w) > z; });
    list.insert(it, window);
}

void WindowsManager::setWindowTransparentForUserInput(Window* window) {
    transparentWindow_ = window;
    updateHoveredWindow_();
}

// ---------------------------------------------------------------- show and hide

void WindowsManager::showNormalWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    closePopups_(false);
    removeFrom(normalWindows_, window);
    insertByZOrder_(normalWindows_, window);
    reportCursor_(window);
    updateHoveredWindow_();
}

void WindowsManager::hideNormalWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    closePopups_(false);
    window->setFocused(false);
    removeFrom(normalWindows_, window);
    reportCursorRemoval_(window);
    Widget const* captured = WidgetHandler::get(capturedWidget_);
    if (captured && (captured == window || captured->getRoot() == window))
        releaseCapture_();
    updateHoveredWindow_();
}

void WindowsManager::showModalWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    releaseCapture_();
    closePopups_(false);
    window->setFocused(true);
    removeFrom(modalWindows_, window);
    modalWindows_.push_back(window);
    reportCursor_(window);
    updateHoveredWindow_();
}

void WindowsManager::hideModalWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    closePopups_(false);
    window->setFocused(false);
    removeFrom(modalWindows_, window);
    reportCursorRemoval_(window);
    updateHoveredWindow_();
}

void WindowsManager::showPopupWindow(PopupWindow* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    window->setFocused(true);
    window->setActive(true);
    removeFrom(popupWindows_, window);
    popupWindows_.push_back(window);
    reportCursor_(window);
    updateHoveredWindow_();
}

void WindowsManager::hidePopupWindow(PopupWindow* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    window->setFocused(false);
    window->setActive(false);
    removeFrom(popupWindows_, window);
    reportCursorRemoval_(window);
    updateHoveredWindow_();
}

void WindowsManager::showOverlayWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    removeFrom(overlayWindows_, window);
    insertByZOrder_(overlayWindows_, window);
}

void WindowsManager::hideOverlayWindow(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    removeFrom(overlayWindows_, window);
}

void WindowsManager::bringWindowForward(WindowBase* window) {
    if (!window || window->getAsWidget())
        return;
    handlesStale_ = true;
    closePopups_(false);
    if (!modalWindows_.empty() || !contains(normalWindows_, window))
        return;
    WindowList const windows = normalWindows_;
    for (WindowBase* other : windows)
        if (other != window && contains(normalWindows_, other) && other->getFocused())
            other->setFocused(false);
    releaseCapture_();
    // The transparent window keeps its place, whatever moves around it.
    WindowBase* const transparent = transparentWindow_ != window ? transparentWindow_ : nullptr;
    auto const transparentAt = std::find(normalWindows_.begin(), normalWindows_.end(), transparent);
    long const transparentIndex = transparentAt - normalWindows_.begin();
    bool const moveTransparent = transparent && transparentAt != normalWindows_.end();
    if (moveTransparent)
        normalWindows_.erase(transparentAt);
    if (removeFrom(normalWindows_, window)) {
        insertByZOrder_(normalWindows_, window);
        reportCursor_(window);
    }
    if (moveTransparent) {
        long const at = std::min(transparentIndex, static_cast<long>(normalWindows_.size()));
        normalWindows_.insert(normalWindows_.begin() + at, transparent);
    }
}

void WindowsManager::forgetWindow(WindowBase* window) {
    handlesStale_ = true;
    removeFrom(normalWindows_, window);
    removeFrom(modalWindows_, window);
    removeFrom(overlayWindows_, window);
    auto popup = std::find_if(popupWindows_.begin(), popupWindows_.end(),
                              [window](PopupWindow* p) { return static_cast<WindowBase*>(p) == window; });
    if (popup != popupWindows_.end())
        popupWindows_.erase(popup);
    removeFrom(cursorHolder_->windows, window);
    if (hoveredWindow_ == window)
        hoveredWindow_ = nullptr;
    if (transparentWindow_ == window)
        transparentWindow_ = nullptr;
}

// ---------------------------------------------------------------- cursor reporting

void WindowsManager::setMouseCursorCallback(MouseCursorCallback callback) {
    cursorHolder_->function = std::move(callback);
}

void WindowsManager::reportCursor_(WindowBase* window) {
    // Held while calling: the callback may install another one.
    std::shared_ptr<CursorHolder> const holder = cursorHolder_;
    if (!holder->function || !window->getHasCursor() || contains(holder->windows, window))
        return;
    holder->windows.push_back(window);
    holder->function(true, window->getMouseCursor(), window);
}

void WindowsManager::reportCursorRemoval_(WindowBase* window) {
    std::shared_ptr<CursorHolder> const holder = cursorHolder_;
    if (!holder->function || !window->getHasCursor() || !removeFrom(holder->windows, window))
        return;
    holder->function(false, -1, window);
}

void WindowsManager::onWindowCursorChanged(WindowBase* window) {
    std::shared_ptr<CursorHolder> const holder = cursorHolder_;
    if (!holder->function || !window)
        return;
    if (window->getHasCursor())
        holder->function(true, window->getMouseCursor(), window);
    else
        holder->function(false, -1, window);
}

// ---------------------------------------------------------------- mouse

bool WindowsManager::onMouseDown(MouseButton button, bool isDouble) {
    tooltipUpdateTarget_->hide();
    ++pressedButtons_;
    skipTooltipRestart_ = true;
    osg::Vec2i const point = mousePosition_();

    if (Widget* captured = enabledWidget(capturedWidget_)) {
        if (isDouble && lastClickedWidget_ == capturedWidget_)
            captured->onMouseDoubleClick(point, button);
        else
            captured->onMouseDown(point, button);
        lastClickedWidget_ = capturedWidget_;
        return true;
    }

    WindowBase* const found = findWindowAtPoint(point);
    bool taken = found != nullptr;
    // A press inside a popup keeps the popups that are active; elsewhere all close.
    closePopups_(found && contains(popupWindows_, found));

    if (WindowBase* window = hoveredWindow_) {
        WidgetHandler* const handle = window->handler();
        PopupList const popups = popupWindows_;
        for (PopupWindow* popup : popups)
            if (contains(popupWindows_, popup))
                popup->setActive(false);
        window->setFocused(true);
        // A double click needs both presses to reach the same target.
        if (Widget* target = WidgetHandler::get(handle)) {
            if (isDouble && lastClickedWidget_ == handle)
                target->onMouseDoubleClick(point, button);
            else
                target->onMouseDown(point, button);
        }
        taken = true;
    }
    lastClickedWidget_ = hoveredWindow_ ? hoveredWindow_->handler() : nullptr;
    return taken;
}

bool WindowsManager::onMouseMove(osg::Vec2i const& position) {
    bool taken = false;
    if (Widget* captured = enabledWidget(capturedWidget_)) {
        captured->onMouseMove(position);
        taken = true;
    } else {
        updateHoveredWindow_();
        if (hoveredWindow_) {
            hoveredWindow_->onMouseMove(position);
            taken = true;
        }
    }
    // With no button held, the first move after a press is skipped, and the
    // ones after it count as the mouse coming to rest somewhere new.
    if (pressedButtons_ == 0) {
        if (skipTooltipRestart_)
            skipTooltipRestart_ = false;
        else
            tooltipUpdateTarget_->restart();
    }
    return taken;
}

bool WindowsManager::onMouseUp(MouseButton button) {
    if (pressedButtons_ > 0)
        --pressedButtons_;
    Widget* target = enabledWidget(capturedWidget_);
    if (!target)
        target = hoveredWindow_;
    if (!target)
        return false;
    target->onMouseUp(mousePosition_(), button);
    return true;
}

bool WindowsManager::onMouseWheel(int delta) {
    osg::Vec2i const point = mousePosition_();
    WindowBase* const active = getActiveWindow();
    if (active && active->onMouseWheel(point, delta))
        return true;
    WindowBase* const window = findWindowAtPoint(point);
    return window && window != active && window->onMouseWheel(point, delta);
}

// ---------------------------------------------------------------- keyboard

bool WindowsManager::handleTabButton() {
    WindowBase* active = getActiveWindow();
    if (!active)
        return false;
    if (keyPressed(KeyLeftShift, KeyRightShift))
        active->setPrevWidgetFocused();
    else
        active->setNextWidgetFocused();
    return true;
}

bool WindowsManager::onKeyDown(KeyboardButton button, int value) {
    if (WindowBase* active = getActiveWindow())
        if (active->onKeyDown(button, value))
            return true;

    WindowBase::HotKey hotKey;
    hotKey.button = button;
    hotKey.altPressed = keyPressed(KeyLeftAlt, KeyRightAlt);
    hotKey.ctrlPressed = keyPressed(KeyLeftCtrl, KeyRightCtrl);
    hotKey.shiftPressed = keyPressed(KeyLeftShift, KeyRightShift);
    bool const handled = button == KeyTab && handleTabButton();

    // A modal window keeps its hot keys to itself.
    if (!modalWindows_.empty())
        return handled || modalWindows_.back()->onHotKey(hotKey);
    if (handled)
        return true;
    // Snapshots: a hot key may show or hide windows. Short lists stay off the heap.
    boost::container::small_vector<PopupWindow*, 8> const popups(popupWindows_.begin(), popupWindows_.end());
    for (size_t i = popups.size(); i-- > 0;)
        if (contains(popupWindows_, popups[i]) && popups[i]->onHotKey(hotKey))
            return true;
    boost::container::small_vector<WindowBase*, 32> const windows(normalWindows_.begin(), normalWindows_.end());
    for (size_t i = windows.size(); i-- > 0;)
        if (contains(normalWindows_, windows[i]) && windows[i]->onHotKey(hotKey))
            return true;
    return false;
}

bool WindowsManager::onKeyUp(KeyboardButton button, int value) {
    WindowBase* active = getActiveWindow();
    return active && active->onKeyUp(button, value);
}

bool WindowsManager::onChar(KeyboardButton button, int value) {
    WindowBase* active = getActiveWindow();
    return active && active->onChar(button, value);
}

// ---------------------------------------------------------------- frame stages

void WindowsManager::rebuildHandles() {
    // The snapshots change only with the lists; an idle frame does not touch the windows.
    if (!handlesStale_)
        return;
    handlesStale_ = false;
    fillHandles(overlayWindows_, overlayHandles_);
    fillHandles(normalWindows_, normalHandles_);
    fillHandles(modalWindows_, modalHandles_);
    fillHandles(popupWindows_, popupHandles_);
}

template <class Visit>
void WindowsManager::forEachSnapshot_(Visit visit) const {
    for (auto const* handles : {&overlayHandles_, &normalHandles_, &modalHandles_, &popupHandles_})
        for (size_t i = 0; i < handles->size(); ++i)
            if (Widget* window = WidgetHandler::get((*handles)[i]))
                visit(window);
}

void WindowsManager::parse() {
    forEachSnapshot_([](Widget* window) { window->parse(); });
}

void WindowsManager::draw() {
    forEachSnapshot_([](Widget* window) { window->draw(); });
    if (Widget* tooltip = WidgetHandler::get(tooltip_))
        tooltip->draw();
}

void WindowsManager::make(GraphicCommands* commands) {
    forEachSnapshot_([commands](Widget* window) { window->make(commands); });
    if (Widget* tooltip = WidgetHandler::get(tooltip_))
        tooltip->make(commands);
}

void WindowsManager::setAllWindowsDirty(int flag) {
    for (WindowBase* window : overlayWindows_)
        window->setDirty(flag);
    for (WindowBase* window : normalWindows_)
        window->setDirty(flag);
    for (WindowBase* window : modalWindows_)
        window->setDirty(flag);
    for (PopupWindow* window : popupWindows_)
        window->setDirty(flag);
}

}  // namespace gui
