#include "WindowBase.h"

#include <algorithm>

#include "Application.h"
#include "GUI.h"
#include "Skin/WindowSkins.h"
#include "WidgetHandler.h"
#include "WindowHeader.h"
#include "WindowView.h"
#include "WindowsManager.h"

namespace gui {

char const* const WindowBase::closeCallbackName = "window close";

// Every window starts hidden, so it is in no list of its manager.
WindowBase::WindowBase() { visible_ = false; }

WindowBase::~WindowBase() {
    for (WidgetHandler* handle : overlayWidgets_)
        if (Widget* widget = WidgetHandler::get(handle)) {
            widget->setParent(nullptr);
            Widget::destroy(widget);
        }
    overlayWidgets_.clear();
    // The kinds leave their lists in their own destructors; this catches what
    // remains, such as the transparent window or the hovered one.
    if (WindowsManager* manager = getManager_())
        manager->forgetWindow(this);
}

void WindowBase::createHeaderAndView_() {
    header_ = new WindowHeader(*this);
    insertWidget_(header_, -1);
    view_ = new WindowView(*this);
    insertWidget_(view_, -1);
}

void WindowBase::createWindowSkin_(char const* skinName) {
    setSkin_(new skin::WindowBaseSkin(this, true));
    skin_->load(skinName);
}

skin::WindowData const* WindowBase::getWindowData_() const {
    return skin_ ? dynamic_cast<skin::WindowData const*>(skin_->getData()) : nullptr;
}

int WindowBase::getHeaderHeight_() const {
    skin::WindowData const* data = getWindowData_();
    return data ? data->getHeaderHeight() : 0;
}

WindowsManager* WindowBase::getManager_() const { return WindowsManager::get(getSurfaceId()); }

void WindowBase::setSurfaceId(int surfaceId) {
    if (surfaceId == surfaceId_)
        return;
    // Leaves the old manager; the window does not show itself again.
    if (visible_)
        setVisible(false);
    surfaceId_ = surfaceId;
}

// ---------------------------------------------------------------- parts and size

void WindowBase::removeWidget_(Widget* widget) {
    // A part that dies or leaves is forgotten, so no pointer outlives it.
    if (widget && widget == static_cast<Widget*>(header_))
        header_ = nullptr;
    if (widget && widget == static_cast<Widget*>(view_))
        view_ = nullptr;
    if (widget) {
        auto it = std::find(overlayWidgets_.begin(), overlayWidgets_.end(), widget->handler());
        if (it != overlayWidgets_.end()) {
            overlayWidgets_.erase(it);
            return;
        }
    }
    Container::removeWidget_(widget);
}

void WindowBase::updateWidgets_() {
    Insets const i = skin_ && skin_->getData() ? skin_->getData()->getInsets() : Insets();
    int const h = getHeaderHeight_();
    int const width = size_.x - i.left - i.right;
    if (header_) {
        header_->setPosition(osg::Vec2i(i.left, i.top));
        header_->setSize(osg::Vec2i(width, h));
    }
    if (view_) {
        view_->setPosition(osg::Vec2i(i.left, i.top + h));
        view_->setSize(osg::Vec2i(width, size_.y - i.top - i.bottom - h));
    }
}

void WindowBase::onSizeChanged_(osg::Vec2i const& size) {
    Container::onSizeChanged_(size);
    updateWidgets_();
}

void WindowBase::updateSize_() {
    Container::updateSize_();
    // A skin change (insets, header height) moves the parts without a new size.
    updateWidgets_();
}

osg::Recti WindowBase::getClientRect() const {
    Insets const i = skin_ && skin_->getData() ? skin_->getData()->getInsets() : Insets();
    return {i.left, i.top, size_.x - i.right, size_.y - getHeaderHeight_() - i.bottom};
}

osg::Vec2i WindowBase::calcSize() const {
    osg::Vec2i const start = Widget::calcSize();
    osg::Vec2i size = view_ ? view_->getPrefSize() : osg::Vec2i();
    if (header_ && header_->getVisible()) {
        osg::Vec2i const header = header_->getPrefSize();
        size.x = std::max(size.x, header.x);
        size.y += std::max(header.y, getHeaderHeight_());
    }
    if (skin_ && skin_->getData()) {
        Insets const i = skin_->getData()->getInsets();
        size.x += i.left + i.right;
        size.y += i.top + i.bottom;
    }
    return {std::max(size.x, start.x), std::max(size.y, start.y)};
}

void WindowBase::onTextChanged_(orm::basic_string<wchar_t> const& text) {
    Container::onTextChanged_(text);
    if (header_)
        header_->setText(text);
}

void WindowBase::centerWindow() {
    GUI const* gui = GUI::get();
    if (!gui)
        return;
    setPosition((gui->getScreenSize() - size_) / 2);
}

osg::Vec2i WindowBase::calcWindowPositionInsideScreen(osg::Vec2i const& position, osg::Vec2i const& size) {
    GUI const* gui = GUI::get();
    osg::Vec2i const screen = gui ? gui->getScreenSize() : osg::Vec2i();
    osg::Vec2i out = position;
    osg::Vec2i const over = position + size - screen;
    if (over.x >= 1)
        out.x -= over.x;
    if (over.y >= 1)
        out.y -= over.y;
    return {std::max(out.x, 0), std::max(out.y, 0)};
}

// ---------------------------------------------------------------- children of the view

void WindowBase::insertWidget(Widget* widget, int index) {
    if (view_)
        view_->insertWidget(widget, index);
}

void WindowBase::removeWidget(Widget* widget) {
    if (view_)
        view_->removeWidget(widget);
}

void WindowBase::clear() {
    if (view_)
        view_->clear();
}

void WindowBase::removeAllWidgets() {
    if (view_)
        view_->removeAllWidgets();
}

int WindowBase::getWidgetCount() const { return view_ ? view_->getWidgetCount() : 0; }

Widget* WindowBase::getWidget(int index) const { return view_ ? view_->getWidget(index) : Container::getWidget(index); }

void WindowBase::setLayout(LayoutHandler* layout) {
    if (view_)
        view_->setLayout(layout);
    else
        Container::setLayout(layout);
}

LayoutHandler* WindowBase::getLayout() const { return view_ ? view_->getLayout() : Container::getLayout(); }

// ---------------------------------------------------------------- closing

void WindowBase::onClose_() {
    setVisible(false);
    callWidgetCallbacks_(getWidgetCallbackType(closeCallbackName));
}

void WindowBase::kill() {
    setVisible(false);
    if (killQueued_)
        return;
    if (GUI* gui = GUI::get()) {
        killQueued_ = true;
        gui->killWindow(this);
    }
}

void WindowBase::destroy_() {
    if (killQueued_) {
        setVisible(false);
        return;
    }
    Container::destroy_();
}

void WindowBase::setHasCursor(bool hasCursor) {
    if (hasCursor != hasCursor_)
        onHasCursorChanged_(hasCursor);
}

// ---------------------------------------------------------------- resizing and cursors

int WindowBase::getResizeMask_(osg::Vec2i const& point) const {
    if (!resizable_)
        return 0;
    osg::Vec2i const p0 = widgetToScreen(osg::Vec2i());
    osg::Vec2i const p1 = p0 + size_;
    int mask = 0;
    // Left and top win where the bands of a narrow window overlap.
    if (point.x >= p0.x && point.x <= p0.x + resizeBorder_)
        mask |= ResizeLeft;
    else if (point.x >= p1.x - resizeBorder_ && point.x <= p1.x)
        mask |= ResizeRight;
    if (point.y >= p0.y && point.y <= p0.y + resizeBorder_)
        mask |= ResizeTop;
    else if (point.y >= p1.y - resizeBorder_ && point.y <= p1.y)
        mask |= ResizeBottom;
    return mask;
}

int WindowBase::getResizeCursor_(int mask) const {
    bool const horz = (mask & (ResizeLeft | ResizeRight)) != 0;
    bool const vert = (mask & (ResizeTop | ResizeBottom)) != 0;
    if (horz && vert) {
        bool const leftTop = (mask & ResizeLeft) && (mask & ResizeTop);
        bool const rightBottom = (mask & ResizeRight) && (mask & ResizeBottom);
        return leftTop || rightBottom ? ResizeCursorDiagonalDown : ResizeCursorDiagonalUp;
    }
    if (horz)
        return ResizeCursorHorizontal;
    if (vert)
        return ResizeCursorVertical;
    return ResizeCursorNone;
}

void WindowBase::pushMouseCursor(int cursorId) {
    // A resize arrow on top is replaced rather than stacked.
    if (resizeCursorPushed_) {
        if (!mouseCursors_.empty())
            mouseCursors_.pop_back();
        resizeCursorPushed_ = false;
    }
    mouseCursors_.push_back(cursorId);
    if (WindowsManager* manager = getManager_())
        manager->onWindowCursorChanged(this);
}

void WindowBase::popMouseCursor() {
    if (!mouseCursors_.empty())
        mouseCursors_.pop_back();
    if (WindowsManager* manager = getManager_())
        manager->onWindowCursorChanged(this);
}

int WindowBase::getMouseCursor() const {
    if (!hasCursor_)
        return -1;
    return mouseCursors_.empty() ? 0 : mouseCursors_.back();
}

void WindowBase::popResizeCursor_() {
    if (!resizeCursorPushed_)
        return;
    resizeCursorPushed_ = false;
    popMouseCursor();
}

void WindowBase::resizeBy_(osg::Vec2i const& point) {
    osg::Vec2i d = point - lastMousePosition_;
    Application const* app = Application::get();
    if (clipResizeCursor_ && app) {
        // The cursor held outside the application window moves nothing on that axis.
        osg::Vec2i const cursor = app->getMousePosition();
        if (cursor.x < 0 || cursor.x > app->getSize().x)
            d.x = 0;
        if (cursor.y < 0 || cursor.y > app->getSize().y)
            d.y = 0;
    }
    lastMousePosition_ = point;
    osg::Vec2i position = position_;
    osg::Vec2i size = size_;
    if (resizeMask_ & ResizeLeft) {
        position.x += d.x;
        size.x -= d.x;
    }
    if (resizeMask_ & ResizeTop) {
        position.y += d.y;
        size.y -= d.y;
    }
    if (resizeMask_ & ResizeRight)
        size.x += d.x;
    if (resizeMask_ & ResizeBottom)
        size.y += d.y;
    setPosition(position);
    setSize(size);
}

// ---------------------------------------------------------------- mouse

void WindowBase::onMouseMove(osg::Vec2i const& point) {
    if (resizeMask_ != 0) {
        resizeBy_(point);
        return;
    }
    int const mask = getResizeMask_(point);
    if (mask == 0) {
        popResizeCursor_();
        Container::onMouseMove(point);
        return;
    }
    // The children see no moves inside the resize band.
    int const cursor = getResizeCursor_(mask);
    if (cursor != 0) {
        pushMouseCursor(cursor);
        resizeCursorPushed_ = true;
    }
}

void WindowBase::onMouseEnter(osg::Vec2i const& point) {
    if (hasCursor_ && !resizeCursorPushed_) {
        int const cursor = getResizeCursor_(getResizeMask_(point));
        if (cursor != 0) {
            pushMouseCursor(cursor);
            resizeCursorPushed_ = true;
        }
    }
    Container::onMouseEnter(point);
}

void WindowBase::onMouseLeave(osg::Vec2i const& point) {
    Container::onMouseLeave(point);
    popResizeCursor_();
}

void WindowBase::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonLeft)
        resizeMask_ = getResizeMask_(point);
    // Another button pressed during a resize lands here too, and the children
    // see nothing of it.
    if (resizeMask_ != 0) {
        lastMousePosition_ = point;
        if (WindowsManager* manager = getManager_())
            manager->captureMouse(handler_);
        return;
    }
    Container::onMouseDown(point, button);
}

void WindowBase::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonLeft && resizeMask_ != 0) {
        resizeMask_ = 0;
        if (WindowsManager* manager = getManager_())
            manager->releaseMouse(handler_);
        return;
    }
    Container::onMouseUp(point, button);
}

void WindowBase::onMouseReleased() {
    // Whoever takes the capture away also ends a resize.
    resizeMask_ = 0;
    Container::onMouseReleased();
}

// ---------------------------------------------------------------- keyboard

bool WindowBase::onKeyDown(KeyboardButton button, int value) {
    return getFocused() && Container::onKeyDown(button, value);
}

bool WindowBase::onChar(KeyboardButton button, int value) { return getFocused() && Container::onChar(button, value); }

bool WindowBase::onKeyUp(KeyboardButton button, int value) { return getFocused() && Container::onKeyUp(button, value); }

void WindowBase::addHotKeyCallback(HotKey const& hotKey, HotKeyCallback const& callback) {
    hotKeyCallbacks_.emplace_back(hotKey, callback);
    // The same key with more modifiers is offered first.
    std::stable_sort(hotKeyCallbacks_.begin(), hotKeyCallbacks_.end(), [](auto const& a, auto const& b) {
        return a.first.getModifierCount() > b.first.getModifierCount();
    });
}

bool WindowBase::removeHotKeyCallback(HotKey const& hotKey, HotKeyCallback const& callback) {
    auto it = std::find(hotKeyCallbacks_.begin(), hotKeyCallbacks_.end(), std::make_pair(hotKey, callback));
    if (it == hotKeyCallbacks_.end())
        return false;
    hotKeyCallbacks_.erase(it);
    return true;
}

bool WindowBase::onHotKey(HotKey const& hotKey) {
    // A callback may register or remove others; only those still registered run.
    auto const snapshot = hotKeyCallbacks_;
    WidgetHandler* const self = handler_;
    bool ran = false;
    for (auto const& entry : snapshot) {
        if (!(entry.first == hotKey))
            continue;
        if (std::find(hotKeyCallbacks_.begin(), hotKeyCallbacks_.end(), entry) == hotKeyCallbacks_.end())
            continue;
        if (entry.second) {
            (*entry.second)();
            ran = true;
        }
        if (!WidgetHandler::get(self))
            break;
    }
    return ran;
}

// ---------------------------------------------------------------- tab focus

void WindowBase::getSortedTabOrderedWidgets_(orm::vector<Widget*>& out) {
    out.clear();
    if (!view_)
        return;
    view_->getTabOrderedWidgets(out);
    std::sort(out.begin(), out.end(), [](Widget* a, Widget* b) { return a->getTabOrder() < b->getTabOrder(); });
}

void WindowBase::setNextWidgetFocused() { moveFocus_(true); }

void WindowBase::setPrevWidgetFocused() { moveFocus_(false); }

void WindowBase::moveFocus_(bool forward) {
    orm::vector<Widget*> list;
    getSortedTabOrderedWidgets_(list);
    if (list.empty())
        return;
    // Walking backwards is walking the reversed list forwards.
    if (!forward)
        std::reverse(list.begin(), list.end());
    auto current = std::find_if(list.begin(), list.end(), [](Widget* w) { return w->getFocused(); });
    Widget* currentWidget = current == list.end() ? nullptr : *current;
    WidgetHandler* next = list.front()->handler();
    if (current != list.end() && current + 1 != list.end())
        next = (*(current + 1))->handler();
    if (currentWidget && next == currentWidget->handler())
        return;
    if (currentWidget)
        currentWidget->setFocused(false);
    // The hand-over can change the tree: offer the focus only to a widget still listed.
    getSortedTabOrderedWidgets_(list);
    Widget* target = WidgetHandler::get(next);
    if (target && std::find(list.begin(), list.end(), target) != list.end())
        target->setTabFocused();
}

// ---------------------------------------------------------------- overlay widgets

void WindowBase::insertOverlayWidget(Widget* widget, int index) {
    if (!widget ||
        std::find(overlayWidgets_.begin(), overlayWidgets_.end(), widget->handler()) != overlayWidgets_.end())
        return;
    auto* oldWindow = dynamic_cast<WindowBase*>(WidgetHandler::get(widget->getParent()));
    if (oldWindow && std::find(oldWindow->overlayWidgets_.begin(), oldWindow->overlayWidgets_.end(),
                               widget->handler()) != oldWindow->overlayWidgets_.end())
        oldWindow->removeOverlayWidget(widget);
    else
        widget->detachFromParent();
    widget->setParent(handler_);
    if (index >= 0 && index < static_cast<int>(overlayWidgets_.size()))
        overlayWidgets_.insert(overlayWidgets_.begin() + index, widget->handler());
    else
        overlayWidgets_.push_back(widget->handler());
    setDirty(DirtySelf);
}

void WindowBase::removeOverlayWidget(Widget* widget) {
    if (!widget)
        return;
    auto it = std::find(overlayWidgets_.begin(), overlayWidgets_.end(), widget->handler());
    if (it == overlayWidgets_.end())
        return;
    overlayWidgets_.erase(it);
    if (widget->getParent() == handler_)
        widget->setParent(nullptr);
    setDirty(DirtySelf);
}

Widget* WindowBase::getOverlayWidget(int index) const {
    if (index < 0 || index >= static_cast<int>(overlayWidgets_.size()))
        return nullptr;
    return WidgetHandler::get(overlayWidgets_[static_cast<size_t>(index)]);
}

void WindowBase::draw_() {
    Container::draw_();
    for (size_t i = 0; i < overlayWidgets_.size(); ++i)
        if (Widget* widget = WidgetHandler::get(overlayWidgets_[i]))
            widget->draw();
}

void WindowBase::make_(GraphicCommands* commands) {
    Container::make_(commands);
    for (size_t i = 0; i < overlayWidgets_.size(); ++i)
        if (Widget* widget = WidgetHandler::get(overlayWidgets_[i]))
            widget->make(commands);
}

}  // namespace gui
