#include "Container.h"

#include <algorithm>

#include "GUI.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "WidgetHandler.h"
#include "layouts/Layout.h"
#include "rast/Renderer.h"

namespace gui {

Container::Container() { widgets_.reserve(4); }

Container::~Container() {
    if (Layout* layout = getLayoutObject_()) {
        layout->setContainer(nullptr);
        Layout::destroy(layout);
    }
    layout_ = nullptr;
    deleteWidgets_();
}

Layout* Container::getLayoutObject_() const { return LayoutHandler::get(layout_); }

void Container::copyParams(Container* target) const {
    if (!target)
        return;
    Widget::copyParams(target);
    if (Layout const* layout = getLayoutObject_())
        if (Layout* copy = layout->clone())
            target->setLayout(copy->handler());
}

// ---------------------------------------------------------------- children

void Container::insertWidget_(Widget* widget, int index) {
    if (!widget || getWidgetIndex_(widget) >= 0)
        return;
    widget->detachFromParent();
    widget->setParent(handler_);
    if (index >= 0 && index < static_cast<int>(widgets_.size()))
        widgets_.insert(widgets_.begin() + index, widget->handler());
    else
        widgets_.push_back(widget->handler());
    updateLayout(false);
}

void Container::removeWidget_(Widget* widget) {
    int const index = getWidgetIndex_(widget);
    if (index < 0)
        return;
    WidgetHandler* handle = widgets_[static_cast<size_t>(index)];
    if (hoveredWidget_ == handle)
        hoveredWidget_ = nullptr;
    if (focusedWidget_ == handle)
        focusedWidget_ = nullptr;
    if (WidgetHandler::get(handle) && widget->getParent() == handler_)
        widget->setParent(nullptr);
    widgets_.erase(widgets_.begin() + index);
    updateLayout(false);
}

Widget* Container::getWidget_(int index) const {
    if (index < 0 || index >= static_cast<int>(widgets_.size()))
        return nullptr;
    return WidgetHandler::get(widgets_[static_cast<size_t>(index)]);
}

int Container::getWidgetIndex_(Widget const* widget) const {
    if (!widget)
        return -1;
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (widgets_[i] == widget->handler())
            return static_cast<int>(i);
    return -1;
}

void Container::deleteWidgets_() {
    hoveredWidget_ = nullptr;
    focusedWidget_ = nullptr;
    // Take the list first: a dying child asks this container to remove it.
    orm::vector<WidgetHandler*> children;
    children.swap(widgets_);
    for (WidgetHandler* handle : children)
        if (Widget* child = WidgetHandler::get(handle)) {
            child->setParent(nullptr);
            Widget::destroy(child);
        }
    children.clear();
    widgets_.swap(children);
}

void Container::clear_() {
    deleteWidgets_();
    updateLayout(false);
}

void Container::resetWidgets_() {
    for (WidgetHandler* handle : widgets_)
        if (Widget* child = WidgetHandler::get(handle))
            child->resetParent();
    hoveredWidget_ = nullptr;
    focusedWidget_ = nullptr;
    widgets_.clear();
}

void Container::removeAllWidgets_() {
    resetWidgets_();
    updateLayout(false);
}

void Container::onWidgetDestroy(WidgetHandler* handle) {
    if (focusedWidget_ == handle)
        focusedWidget_ = nullptr;
    if (hoveredWidget_ == handle)
        hoveredWidget_ = nullptr;
}

Widget* Container::getFocusedWidget() const { return WidgetHandler::get(focusedWidget_); }

// ---------------------------------------------------------------- layout and size

void Container::setLayout(LayoutHandler* layout) {
    if (layout == layout_)
        return;
    if (Layout* old = getLayoutObject_()) {
        old->setContainer(nullptr);
        Layout::destroy(old);
    }
    layout_ = layout;
    if (Layout* now = getLayoutObject_()) {
        now->setContainer(handler_);
        now->updateSize();
    }
}

void Container::updateLayout(bool now) {
    if (now) {
        if (Layout* layout = getLayoutObject_())
            layout->updateSize();
    } else {
        layoutDirty_ = true;
    }
    setDirty(DirtySelf);
}

void Container::redraw_() {
    // Any number of inserts in a frame costs one layout pass.
    if (layoutDirty_) {
        if (Layout* layout = getLayoutObject_())
            layout->updateSize();
        layoutDirty_ = false;
    }
    Widget::redraw_();
}

void Container::onSizeChanged_(osg::Vec2i const& size) {
    Widget::onSizeChanged_(size);
    if (Layout* layout = getLayoutObject_())
        layout->updateSize();
}

void Container::updateSize() {
    if (Layout* layout = getLayoutObject_())
        layout->updateSize();
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->updateSize();
}

osg::Vec2i Container::getMinSize() const {
    osg::Vec2i size = Widget::getMinSize();
    if (Layout const* layout = getLayoutObject_()) {
        int const z = static_cast<int>(zoom_);
        osg::Vec2i const l = layout->getMinSize();
        size.x = std::max(size.x, l.x * z);
        size.y = std::max(size.y, l.y * z);
    }
    return size;
}

osg::Vec2i Container::getMaxSize() const {
    osg::Vec2i size = Widget::getMaxSize();
    Layout const* layout = getLayoutObject_();
    if (!layout)
        return size;
    int const z = static_cast<int>(zoom_);
    osg::Vec2i const m = layout->getMaxSize() * z;
    // The two axes differ on purpose: x takes the layout's below 1, y only at exactly 0.
    if (size.x < 1)
        size.x = m.x;
    else if (m.x > 0)
        size.x = std::min(size.x, m.x);
    if (size.y == 0)
        size.y = m.y;
    else if (m.y > 0)
        size.y = std::min(size.y, m.y);
    return size;
}

osg::Vec2i Container::calcMaxSize() const {
    Layout const* layout = getLayoutObject_();
    return layout ? layout->calcMaxSize() : getMaxSize();
}

osg::Vec2i Container::getPrefSize() const {
    Layout const* layout = getLayoutObject_();
    if (!layout) {
        osg::Vec2i size = calcSize();
        if (size == osg::Vec2i())
            size = getSize();
        return clampSize_(size);
    }
    osg::Vec2i size = layout->getPrefSize();
    if (skin_ && skin_->getData()) {
        Insets const i = skin_->getData()->getInsets();
        size.x += i.left + i.right;
        size.y += i.top + i.bottom;
    }
    return clampSize_(osg::Vec2i(std::max(size.x, 0), std::max(size.y, 0)));
}

// ---------------------------------------------------------------- mouse routing

void Container::updateHoveredWidget_(osg::Vec2i const& point) {
    Widget* top = getWidgetAtScreenPoint(point);
    WidgetHandler* handle = nullptr;
    if (top && top != this && top->getVisible(false) && top->getEnabled())
        handle = top->handler();
    if (handle != hoveredWidget_)
        onHoveredWidgetChanged_(handle, point);
}

void Container::onHoveredWidgetChanged_(WidgetHandler* handle, osg::Vec2i const& point) {
    if (Widget* old = WidgetHandler::get(hoveredWidget_))
        old->onMouseLeave(point);
    hoveredWidget_ = handle;
    if (Widget* now = WidgetHandler::get(handle))
        now->onMouseEnter(point);
}

namespace {

// The hovered child if it is alive and enabled.
Widget* enabledChild(WidgetHandler* handle) {
    Widget* child = WidgetHandler::get(handle);
    return child && child->getEnabled() ? child : nullptr;
}

}  // namespace

void Container::onMouseMove(osg::Vec2i const& point) {
    if (!getEnabled())
        return;
    updateHoveredWidget_(point);
    if (Widget* child = enabledChild(hoveredWidget_))
        child->onMouseMove(point);
    if (getGenerateMouseMoveCallbacks(point))
        Widget::onMouseMove(point);
}

void Container::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    updateHoveredWidget_(point);
    // The child may remove or hide itself; focus moves only if it is still the one under the mouse.
    WidgetHandler* const pressed = hoveredWidget_;
    if (Widget* child = enabledChild(hoveredWidget_))
        child->onMouseDown(point, button);
    updateHoveredWidget_(point);
    if (hoveredWidget_ == pressed)
        setFocusedWidget_(pressed);
    if (getGenerateMouseDownCallbacks(point, button))
        Widget::onMouseDown(point, button);
}

void Container::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    setFocusedWidget_(hoveredWidget_);
    if (Widget* child = enabledChild(hoveredWidget_))
        child->onMouseDoubleClick(point, button);
    updateHoveredWidget_(point);
    if (getGenerateMouseDoubleClickCallbacks(point, button))
        Widget::onMouseDoubleClick(point, button);
}

void Container::onMouseUp(osg::Vec2i const& point, MouseButton button) {
    if (!getEnabled())
        return;
    if (Widget* child = enabledChild(hoveredWidget_))
        child->onMouseUp(point, button);
    updateHoveredWidget_(point);
    if (getGenerateMouseUpCallbacks(point, button))
        Widget::onMouseUp(point, button);
}

bool Container::onMouseWheel(osg::Vec2i const& point, int delta) {
    if (Widget* child = enabledChild(hoveredWidget_))
        if (child->onMouseWheel(point, delta))
            return true;
    return Widget::onMouseWheel(point, delta);
}

void Container::onMouseEnter(osg::Vec2i const& point) {
    updateHoveredWidget_(point);
    Widget::onMouseEnter(point);
}

void Container::onMouseLeave(osg::Vec2i const& point) {
    onHoveredWidgetChanged_(nullptr, point);
    Widget::onMouseLeave(point);
}

void Container::onMouseCursorMove(osg::Vec2i const& point) {
    updateHoveredWidget_(point);
    if (Widget* child = enabledChild(hoveredWidget_))
        child->onMouseCursorMove(point);
}

void Container::onPositionChanged_(osg::Vec2i const& position) {
    Widget::onPositionChanged_(position);
    // Hovering follows a container that moved under a still mouse.
    if (GUI* gui = GUI::get())
        onMouseCursorMove(gui->getMousePosition(getRootSurfaceId()));
}

void Container::onEnableChanged_(bool enabled) {
    Widget::onEnableChanged_(enabled);
    if (getEnabled())
        if (GUI* gui = GUI::get())
            onMouseCursorMove(gui->getMousePosition(getRootSurfaceId()));
}

// ---------------------------------------------------------------- keyboard and focus

bool Container::onKeyDown(KeyboardButton button, int value) {
    if (Widget* child = enabledChild(focusedWidget_))
        if (child->onKeyDown(button, value))
            return true;
    // A container's own keyboard callbacks observe; they never consume.
    Widget::onKeyDown(button, value);
    return false;
}

bool Container::onChar(KeyboardButton button, int value) {
    if (Widget* child = enabledChild(focusedWidget_))
        if (child->onChar(button, value))
            return true;
    Widget::onChar(button, value);
    return false;
}

bool Container::onKeyUp(KeyboardButton button, int value) {
    if (Widget* child = enabledChild(focusedWidget_))
        if (child->onKeyUp(button, value))
            return true;
    Widget::onKeyUp(button, value);
    return false;
}

void Container::setFocusedWidget_(WidgetHandler* handle) {
    if (handle == focusedWidget_)
        return;
    WidgetHandler* const old = focusedWidget_;
    focusedWidget_ = nullptr;
    if (Widget* oldChild = WidgetHandler::get(old))
        oldChild->setFocused(false);
    Widget* child = WidgetHandler::get(handle);
    if (child && child->getFocusable()) {
        focusedWidget_ = handle;
        child->setFocused(true);
        // Focus walks up the tree.
        setFocused(true);
    }
}

void Container::onFocusChanged_(bool focused) {
    Widget::onFocusChanged_(focused);
    if (Widget* child = WidgetHandler::get(focusedWidget_))
        child->setFocused(focused);
}

// ---------------------------------------------------------------- tree walks

void Container::setDirty(int flag) {
    Widget::setDirty(flag);
    if (flag == DirtySelf)
        return;
    int const childFlag = flag == DirtyChildren ? DirtySelf : DirtyAll;
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->setDirty(childFlag);
}

void Container::doRedrawChildren() {
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i])) {
            child->doRedraw();
            child->doRedrawChildren();
        }
}

void Container::redrawChildren() {
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->redraw();
}

void Container::drawChildren() {
    // Clipped, a child draws nothing outside its rectangle, so one that lies
    // outside the clip in force (scrolled away, or away from the part of a
    // target being drawn again) is skipped.
    GUI const* gui = GUI::get();
    rastRenderer const* renderer = rastRenderer::get();
    bool const cull = gui && renderer && gui->getClippingEnabled() && gui->getOffscreenScaleFactor() == osg::Vec2f(1, 1);
    for (size_t i = 0; i < widgets_.size(); ++i) {
        Widget* child = WidgetHandler::get(widgets_[i]);
        if (!child)
            continue;
        if (cull && renderer->isClippedAway(osg::Recti::fromPosSize(child->getPosition(), child->getSize())))
            continue;
        child->draw();
    }
}

void Container::makeChildren(GraphicCommands* commands) {
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->make(commands);
}

void Container::parseChildren_() {
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->parse();
}

void Container::makeParse_(GraphicCommands* commands) {
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->makeParse(commands);
}

void Container::localize(LocalizationMap const& map) {
    Widget::localize(map);
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->localize(map);
}

void Container::getTabOrderedWidgets(orm::vector<Widget*>& out) {
    Widget::getTabOrderedWidgets(out);
    if (!getVisible(false) || !getEnabled())
        return;
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            child->getTabOrderedWidgets(out);
}

// ---------------------------------------------------------------- hit tests and names

Widget* Container::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    if (!visible_ || !getScreenPointInside(point))
        return nullptr;
    for (size_t i = widgets_.size(); i-- > 0;) {
        Widget* child = WidgetHandler::get(widgets_[i]);
        if (child && child->getVisible(false) && child->getScreenPointInside(point))
            return child;
    }
    return this;
}

Widget* Container::findWidgetAtScreenPoint(osg::Vec2i const& point) {
    if (!visible_ || !getScreenPointInside(point))
        return nullptr;
    for (size_t i = widgets_.size(); i-- > 0;)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            if (Widget* found = child->findWidgetAtScreenPoint(point))
                return found;
    return this;
}

bool Container::getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const {
    for (size_t i = widgets_.size(); i-- > 0;) {
        Widget const* child = WidgetHandler::get(widgets_[i]);
        if (child && child->getVisible(false) && child->getScreenPointInside(point))
            return child->getHasMouseInputAtScreenPoint(point);
    }
    return Widget::getHasMouseInputAtScreenPoint(point);
}

Widget* Container::findWidgetByName(orm::basic_string<wchar_t> const& name) {
    if (name == name_)
        return this;
    // A direct child wins over a deeper one that comes first.
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            if (child->getName() == name)
                return child;
    for (size_t i = 0; i < widgets_.size(); ++i)
        if (Widget* child = WidgetHandler::get(widgets_[i]))
            if (Widget* found = child->findWidgetByName(name))
                return found;
    return nullptr;
}

}  // namespace gui
