#include "Widget.h"

#include <algorithm>

#include "Container.h"
#include "GUI.h"
#include "Skin/GraphicCommands.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "WidgetHandler.h"
#include "WindowBase.h"
#include "WindowsManager.h"
#include "rast/Renderer.h"

namespace gui {

char const* const Widget::changeCallbackName = "widget change";
char const* const Widget::focusCallbackName = "widget focus";
char const* const Widget::positionCallbackName = "widget position";
char const* const Widget::sizeCallbackName = "widget size";

bool Widget::redrawingAll_ = false;

namespace {

template <class List, class T>
void addOnce(List& list, T const& item) {
    if (std::find(list.begin(), list.end(), item) == list.end())
        list.push_back(item);
}

template <class List, class T>
void removeKeepingOrder(List& list, T const& item) {
    auto it = std::find(list.begin(), list.end(), item);
    if (it != list.end())
        list.erase(it);
}

// Removes the first element matching `pred` by moving the last one into its place.
template <class List, class Pred>
void removeUnordered(List& list, Pred pred) {
    auto it = std::find_if(list.begin(), list.end(), pred);
    if (it == list.end())
        return;
    *it = list.back();
    list.pop_back();
}

// The ids of the widget's own callback kinds, looked up once. The first
// widget made looks them up, so no later frame enters a new name.
struct OwnCallbackIds {
    int change, focus, position, size;
};

OwnCallbackIds const& ownCallbackIds() {
    static OwnCallbackIds const ids{getWidgetCallbackType(Widget::changeCallbackName),
                                    getWidgetCallbackType(Widget::focusCallbackName),
                                    getWidgetCallbackType(Widget::positionCallbackName),
                                    getWidgetCallbackType(Widget::sizeCallbackName)};
    return ids;
}

}  // namespace

// ---------------------------------------------------------------- class-wide lists

orm::vector<Widget::RedrawEntry>& Widget::widgetsToRedraw_() {
    static orm::vector<RedrawEntry> list;
    return list;
}

orm::vector<Widget::RedrawEntry>& Widget::widgetsAddedDuringRedraw_() {
    static orm::vector<RedrawEntry> list;
    return list;
}

orm::vector<Widget*>& Widget::widgetsToDoRedraw_() {
    static orm::vector<Widget*> list;
    return list;
}

size_t Widget::getRedrawQueueSize() { return widgetsToRedraw_().size(); }

size_t Widget::getDoRedrawQueueSize() { return widgetsToDoRedraw_().size(); }

void Widget::enterRedrawList_() {
    auto& list = redrawingAll_ ? widgetsAddedDuringRedraw_() : widgetsToRedraw_();
    for (RedrawEntry const& e : list)
        if (e.first == this && e.second)
            return;
    list.emplace_back(this, true);
}

void Widget::redrawAll() {
    redrawingAll_ = true;
    auto& list = widgetsToRedraw_();
    // Indexing: a redraw may destroy widgets, which clears their alive flags
    // in this list but never removes entries while it is walked.
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i].second)
            list[i].first->redraw();
    list.clear();
    list.swap(widgetsAddedDuringRedraw_());
    redrawingAll_ = false;
}

void Widget::doRedrawAll() {
    auto& list = widgetsToDoRedraw_();
    for (size_t i = 0; i < list.size(); ++i)
        list[i]->doRedraw();
    list.clear();
}

// ---------------------------------------------------------------- lifecycle

Widget::Widget() : handler_(WidgetHandler::create(this)) {
    ownCallbackIds();
    // Every new widget is brought up to date once.
    enterRedrawList_();
}

Widget::~Widget() {
    WidgetHandler::release(handler_);
    removeUnordered(widgetsToDoRedraw_(), [this](Widget* w) { return w == this; });
    auto isThis = [this](RedrawEntry const& e) { return e.first == this; };
    if (redrawingAll_) {
        for (RedrawEntry& e : widgetsToRedraw_())
            if (e.first == this)
                e.second = false;
    } else {
        removeUnordered(widgetsToRedraw_(), isThis);
    }
    removeUnordered(widgetsAddedDuringRedraw_(), isThis);
    if (Container* parent = getParentContainer_())
        parent->removeWidget_(this);
    delete skin_;
    delete tooltipSkin_;
    delete debugSkin_;
}

void Widget::destroy(Widget* widget) {
    if (widget)
        widget->destroy_();
}

void Widget::destroy_() {
    if (Container* parent = getParentContainer_())
        parent->onWidgetDestroy(handler_);
    if (WindowsManager* manager = WindowsManager::get(getRootSurfaceId()))
        manager->releaseMouse(handler_);
    delete this;
}

void Widget::setSkin_(skin::Skin* skin) {
    if (skin == skin_)
        return;
    delete skin_;
    skin_ = skin;
    skinSizeValid_ = false;
}

Container* Widget::getParentContainer_() const { return dynamic_cast<Container*>(WidgetHandler::get(parent_)); }

Widget* Widget::clone() const { return nullptr; }

void Widget::copyParams(Widget* target) const {
    if (!target)
        return;
    target->setName(getName());
    target->setText(getText());
    target->setPosition(getPosition());
    target->setSize(getSize());
    target->setVisible(visible_);
    target->setEnabled(enabled_);
    target->setZoom(getZoom());
    target->setOpacity(getOpacity());
    target->setDrawToTarget(drawToTarget_);
    target->setTooltipText(getTooltipText());
    target->setResourceString(getResourceString());
}

// ---------------------------------------------------------------- tree

int Widget::getRootSurfaceId() const {
    auto const* window = dynamic_cast<WindowBase const*>(getRoot());
    return window ? window->getSurfaceId() : 0;
}

void Widget::setParent(WidgetHandler* parent) {
    if (parent != parent_)
        onParentChanged_(parent);
}

void Widget::onParentChanged_(WidgetHandler* parent) { parent_ = parent; }

void Widget::detachFromParent() {
    if (Container* parent = getParentContainer_())
        parent->removeWidget_(this);
}

Widget* Widget::getRoot() const {
    Widget* root = nullptr;
    for (Widget* w = WidgetHandler::get(parent_); w; w = WidgetHandler::get(w->getParent()))
        root = w;
    return root;
}

Widget* Widget::findWidgetByName(orm::basic_string<wchar_t> const& name) { return name == name_ ? this : nullptr; }

// ---------------------------------------------------------------- state

int Widget::getInteractiveState() const { return getEnabled() ? 0 : 3; }

int Widget::getInteractiveState_(bool hot, bool down) const {
    if (!getEnabled())
        return 3;
    if (hot && down)
        return 2;
    if (hot || down)
        return 1;
    return 0;
}

void Widget::setTooltipSkin(skin::Skin const* skin) {
    if (skin == tooltipSkin_)
        return;
    delete tooltipSkin_;
    tooltipSkin_ = nullptr;
    if (skin) {
        tooltipSkin_ = new skin::Skin(nullptr, true);
        skin->copyTo(tooltipSkin_);
    }
}

void Widget::setText(orm::basic_string<wchar_t> const& text) {
    if (text != text_)
        onTextChanged_(text);
}

void Widget::onTextChanged_(orm::basic_string<wchar_t> const& text) {
    text_ = text;
    if (skin_)
        skin_->setTextChanged();
    setDirty(DirtySelf);
}

void Widget::setPosition(osg::Vec2i const& position) {
    if (position != position_)
        onPositionChanged_(position);
}

void Widget::onPositionChanged_(osg::Vec2i const& position) {
    // A move changes the target the widget is drawn into where it was and where it is.
    damageOwnerTarget_();
    position_ = position;
    damageOwnerTarget_();
    callWidgetCallbacks_(ownCallbackIds().position);
}

void Widget::setSize(osg::Vec2i const& size) {
    osg::Vec2i const valid = validateSize_(size);
    if (valid != size_)
        onSizeChanged_(valid);
}

void Widget::onSizeChanged_(osg::Vec2i const& size) {
    // The new rectangle is marked stale when the widget is redrawn; the old one now.
    damageOwnerTarget_();
    size_ = size;
    skinSizeValid_ = false;  // wrapped text measures by the width
    if (skin_)
        skin_->setSizeChanged();
    setDirty(DirtySelf);
    setDirtySize(false);
    callWidgetCallbacks_(ownCallbackIds().size);
}

void Widget::setTabOrder(int order) {
    if (getFocusable())
        tabOrder_ = order;
}

void Widget::getTabOrderedWidgets(orm::vector<Widget*>& out) {
    if (tabOrder_ > 0 && getFocusable())
        out.push_back(this);
}

void Widget::setVisible(bool visible) {
    if (visible != visible_)
        onVisibleChanged_(visible);
}

void Widget::onVisibleChanged_(bool visible) {
    visible_ = visible;
    setDirty(DirtySelf);
}

bool Widget::getVisible(bool recursive) const {
    if (!visible_ || !recursive)
        return visible_;
    Widget const* parent = WidgetHandler::get(parent_);
    return parent ? parent->getVisible(true) : true;
}

void Widget::setFocused(bool focused) {
    if (focused != focused_)
        onFocusChanged_(focused);
}

void Widget::onFocusChanged_(bool focused) {
    focused_ = focused;
    if (Widget* parent = WidgetHandler::get(parent_))
        parent->setFocusedWidget_(focused ? handler_ : nullptr);
    setDirty(DirtyChildren);
    callWidgetCallbacks_(ownCallbackIds().focus);
}

void Widget::setEnabled(bool enabled) {
    if (enabled != enabled_)
        onEnableChanged_(enabled);
}

void Widget::onEnableChanged_(bool enabled) {
    enabled_ = enabled;
    setDirty(DirtyAll);
}

bool Widget::getEnabled() const {
    if (!enabled_)
        return false;
    Widget const* parent = WidgetHandler::get(parent_);
    return parent ? parent->getEnabled() : true;
}

void Widget::setZoom(float zoom) {
    if (zoom > 0.0f && zoom != zoom_)
        onZoomChanged_(zoom);
}

void Widget::onZoomChanged_(float zoom) {
    zoom_ = zoom;
    setDirty(DirtySelf);
}

void Widget::setOpacity(float opacity) {
    if (opacity < 0.0f || opacity > 1.0f)
        return;
    // Only crossing 1.0 changes whether the widget draws through a target.
    if ((opacity_ == 1.0f) != (opacity == 1.0f))
        setDirty(DirtySelf);
    opacity_ = opacity;
}

bool Widget::getDrawToTarget() const {
    return (skin_ && skin_->getNeedsTarget()) || drawToTarget_ || opacity_ != 1.0f || zoom_ != 1.0f;
}

void Widget::setShaderEffect(skin::ShaderEffect* effect) {
    if (skin_)
        skin_->setShaderEffect(effect);
}

void Widget::localize(LocalizationMap const& map) {
    auto translate = [&map](orm::basic_string<wchar_t> const& s, orm::basic_string<wchar_t>& out) {
        if (s.empty() || s[0] != L'$')
            return false;
        auto it = map.find(orm::basic_string<wchar_t>(s.substr(1)));
        if (it == map.end())
            return false;
        out = it->second;
        return true;
    };
    orm::basic_string<wchar_t> value;
    if (translate(text_, value))
        setText(value);
    if (translate(tooltipText_, value))
        setTooltipText(value);
}

// ---------------------------------------------------------------- size

osg::Vec2i Widget::getMinSize() const {
    if (!skin_ || !skin_->getData())
        return {};
    int const z = static_cast<int>(zoom_);
    osg::Vec2i const s = skin_->getData()->getMinSize();
    return {s.x * z, s.y * z};
}

osg::Vec2i Widget::getMaxSize() const {
    if (!skin_ || !skin_->getData())
        return {};
    int const z = static_cast<int>(zoom_);
    osg::Vec2i const s = skin_->getData()->getMaxSize();
    return {s.x * z, s.y * z};
}

osg::Vec2i Widget::validateSize_(osg::Vec2i const& size) const {
    return clampSize_(osg::Vec2i(std::max(size.x, 0), std::max(size.y, 0)));
}

osg::Vec2i Widget::clampSize_(osg::Vec2i const& size) const {
    osg::Vec2i const mn = getMinSize();
    osg::Vec2i const mx = getMaxSize();
    osg::Vec2i out = size;
    // The maximum is applied last, so it wins over the minimum.
    if (mn.x > 0)
        out.x = std::max(out.x, mn.x);
    if (mx.x > 0)
        out.x = std::min(out.x, mx.x);
    if (mn.y > 0)
        out.y = std::max(out.y, mn.y);
    if (mx.y > 0)
        out.y = std::min(out.y, mx.y);
    return out;
}

osg::Vec2i Widget::calcSize() const {
    if (!skin_)
        return {};
    // Measuring lays out the text; layouts ask several times in one pass.
    if (!skinSizeValid_) {
        skinSize_ = skin_->calcSize();
        skinSizeValid_ = true;
    }
    return skinSize_;
}

osg::Vec2i Widget::getPrefSize() const { return clampSize_(calcSize()); }

void Widget::updateSize_() { setSize(getSize()); }

osg::Recti Widget::getClientRect_() const {
    if (skin_ && skin_->getData()) {
        Insets const i = skin_->getData()->getInsets();
        return {i.left, i.top, size_.x - i.right, size_.y - i.bottom};
    }
    int const z = static_cast<int>(zoom_);
    return {0, 0, size_.x * z, size_.y * z};
}

// ---------------------------------------------------------------- coordinates and hit tests

osg::Vec2i Widget::widgetToScreen(osg::Vec2i const& point) const {
    osg::Vec2i p = point + position_;
    for (Widget const* w = WidgetHandler::get(parent_); w; w = WidgetHandler::get(w->getParent()))
        p += w->getPosition();
    return p;
}

osg::Vec2i Widget::screenToWidget(osg::Vec2i const& point) const {
    osg::Vec2i p = point - position_;
    for (Widget const* w = WidgetHandler::get(parent_); w; w = WidgetHandler::get(w->getParent()))
        p -= w->getPosition();
    return p;
}

bool Widget::getScreenPointInside(osg::Vec2i const& point) const {
    if (size_.x < 0 || size_.y < 0)
        return false;
    osg::Vec2i const p = screenToWidget(point);
    // The right and bottom edges count as inside.
    return p.x >= 0 && p.x <= size_.x && p.y >= 0 && p.y <= size_.y;
}

Widget* Widget::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    return visible_ && getScreenPointInside(point) ? this : nullptr;
}

Widget* Widget::findWidgetAtScreenPoint(osg::Vec2i const& point) { return getWidgetAtScreenPoint(point); }

bool Widget::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const { return !mouseCallbacks_.empty(); }

osg::Vec2i Widget::getTargetPosition_() const {
    Widget const* target = GUI::get() ? GUI::get()->getTargetWidget() : nullptr;
    osg::Vec2i p = position_;
    for (Widget const* w = WidgetHandler::get(parent_); w && w != target; w = WidgetHandler::get(w->getParent()))
        p += w->getPosition();
    return p;
}

osg::Recti Widget::getClipRect_() const {
    GUI const* gui = GUI::get();
    osg::Vec2i const o = getTargetPosition_() + gui->getScreenPosition();
    osg::Vec2f const f = gui->getOffscreenScaleFactor();
    return {static_cast<int>(static_cast<float>(o.x) * f.x), static_cast<int>(static_cast<float>(o.y) * f.y),
            static_cast<int>(static_cast<float>(o.x + size_.x) * f.x),
            static_cast<int>(static_cast<float>(o.y + size_.y) * f.y)};
}

// ---------------------------------------------------------------- input and callbacks

void Widget::onMouseMove(osg::Vec2i const& p) { callMouseCallbacks_(MouseCallbackMove, p.x, p.y, 0); }
void Widget::onMouseEnter(osg::Vec2i const& p) { callMouseCallbacks_(MouseCallbackEnter, p.x, p.y, 0); }
void Widget::onMouseLeave(osg::Vec2i const& p) { callMouseCallbacks_(MouseCallbackLeave, p.x, p.y, 0); }
void Widget::onMouseDown(osg::Vec2i const& p, MouseButton b) { callMouseCallbacks_(MouseCallbackDown, p.x, p.y, b); }
void Widget::onMouseDoubleClick(osg::Vec2i const& p, MouseButton b) {
    callMouseCallbacks_(MouseCallbackDoubleDown, p.x, p.y, b);
}
void Widget::onMouseUp(osg::Vec2i const& p, MouseButton b) { callMouseCallbacks_(MouseCallbackUp, p.x, p.y, b); }

void Widget::onMouseReleased() {
    osg::Vec2i const p = GUI::get() ? GUI::get()->getMousePosition(getRootSurfaceId()) : osg::Vec2i();
    callMouseCallbacks_(MouseCallbackReleased, p.x, p.y, 0);
}

bool Widget::onMouseWheel(osg::Vec2i const& p, int delta) {
    WidgetHandler* const self = handler_;
    for (size_t i = 0; i < mouseWheelCallbacks_.size(); ++i) {
        MouseWheelCallback const callback = mouseWheelCallbacks_[i];
        if ((*callback)(p.x, p.y, delta))
            return true;
        if (!WidgetHandler::get(self))
            return false;
    }
    return false;
}

bool Widget::onKeyDown(KeyboardButton b, int v) { return callKeyboardCallbacks_(KeyboardCallbackDown, b, v); }
bool Widget::onChar(KeyboardButton b, int v) { return callKeyboardCallbacks_(KeyboardCallbackChar, b, v); }
bool Widget::onKeyUp(KeyboardButton b, int v) { return callKeyboardCallbacks_(KeyboardCallbackUp, b, v); }

void Widget::addMouseCallback(MouseCallbackType type, MouseCallback const& callback) {
    if (callback)
        addOnce(mouseCallbacks_[type], callback);
}

void Widget::removeMouseCallback(MouseCallbackType type, MouseCallback const& callback) {
    auto it = mouseCallbacks_.find(type);
    if (it == mouseCallbacks_.end())
        return;
    removeKeepingOrder(it->second, callback);
    // An empty list is no callback: hit tests for mouse input ask the map.
    if (it->second.empty())
        mouseCallbacks_.erase(it);
}

void Widget::addMouseWheelCallback(MouseWheelCallback const& callback) {
    if (callback)
        addOnce(mouseWheelCallbacks_, callback);
}

void Widget::removeMouseWheelCallback(MouseWheelCallback const& callback) {
    removeKeepingOrder(mouseWheelCallbacks_, callback);
}

void Widget::addKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback) {
    if (callback)
        addOnce(keyboardCallbacks_[type], callback);
}

void Widget::removeKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback) {
    auto it = keyboardCallbacks_.find(type);
    if (it != keyboardCallbacks_.end())
        removeKeepingOrder(it->second, callback);
}

void Widget::addWidgetCallback(int id, WidgetCallback const& callback) {
    if (callback)
        addOnce(widgetCallbacks_[id], callback);
}

void Widget::removeWidgetCallback(int id, WidgetCallback const& callback) {
    auto it = widgetCallbacks_.find(id);
    if (it != widgetCallbacks_.end())
        removeKeepingOrder(it->second, callback);
}

void Widget::callMouseCallbacks_(MouseCallbackType type, int x, int y, int button) {
    auto it = mouseCallbacks_.find(type);
    if (it == mouseCallbacks_.end())
        return;
    // No snapshot: a mouse callback must not change the callbacks of its own kind on its own widget.
    // It may destroy the widget, though, which ends the walk.
    WidgetHandler* const self = handler_;
    auto const& callbacks = it->second;
    for (size_t i = 0; i < callbacks.size(); ++i) {
        MouseCallback const callback = callbacks[i];
        (*callback)(x, y, button);
        if (!WidgetHandler::get(self))
            return;
    }
}

bool Widget::callKeyboardCallbacks_(KeyboardCallbackType type, KeyboardButton key, int value) {
    auto it = keyboardCallbacks_.find(type);
    if (it == keyboardCallbacks_.end())
        return false;
    WidgetHandler* const self = handler_;
    bool handled = false;
    for (size_t i = 0; i < it->second.size(); ++i) {
        KeyboardCallback const callback = it->second[i];
        if ((*callback)(key, value))
            handled = true;
        if (!WidgetHandler::get(self))
            break;
    }
    return handled;
}

void Widget::callWidgetCallbacks_(int id) {
    auto it = widgetCallbacks_.find(id);
    if (it == widgetCallbacks_.end())
        return;
    WidgetHandler* const self = handler_;
    for (size_t i = 0; i < it->second.size(); ++i) {
        WidgetCallback const callback = it->second[i];
        (*callback)();
        if (!WidgetHandler::get(self))
            return;
    }
}

void Widget::onChange_() { callWidgetCallbacks_(ownCallbackIds().change); }

// ---------------------------------------------------------------- dirty protocol

void Widget::setDirty(int) {
    // Whatever changes the widget's look may change what it measures.
    skinSizeValid_ = false;
    ownChange_ = true;
    markDirty_();
}

void Widget::markDirty_() {
    if (!dirty_) {
        enterRedrawList_();
        if (Widget* parent = WidgetHandler::get(parent_))
            parent->onChildBecomeDirty_(this);
    }
    dirty_ = true;
}

void Widget::onChildBecomeDirty_(Widget*) {
    // A widget drawn through a target holds its children's pixels: it is
    // drawn again, but only where the children mark their rectangles stale.
    if (getDrawToTarget())
        markDirty_();
    if (Widget* parent = WidgetHandler::get(parent_))
        parent->onChildBecomeDirty_(this);
}

Widget* Widget::findTargetOwner_(osg::Vec2i& parentOrigin) const {
    parentOrigin = osg::Vec2i(0, 0);
    for (Widget* w = WidgetHandler::get(parent_); w; w = WidgetHandler::get(w->parent_)) {
        if (w->getDrawToTarget())
            return w;
        parentOrigin += w->position_;
    }
    return nullptr;
}

void Widget::damageOwnerTarget_() {
    osg::Vec2i origin;
    Widget* owner = findTargetOwner_(origin);
    if (!owner)
        return;
    GUI const* gui = GUI::get();
    // Unclipped, a widget may draw anywhere in the target.
    if (!gui || !gui->getClippingEnabled())
        owner->targetDamageAll_ = true;
    osg::Recti const rect = osg::Recti::fromPosSize(origin + position_, size_);
    owner->targetDamage_.expandBy(rect.min);
    owner->targetDamage_.expandBy(rect.max);
    owner->markDirty_();
}

bool Widget::takeTargetDamage(osg::Recti& damage) {
    bool const whole = targetDamageAll_;
    damage = targetDamage_;
    targetDamage_ = osg::Recti();
    targetDamageAll_ = false;
    return whole;
}

void Widget::redraw() {
    if (redrawCallback_)
        redrawCallback_();
    if (getDirtySize()) {
        updateSize_();
        setDirtySize(false);
    }
    if (dirty_) {
        // A change of its own look, or of what its own target holds, changes
        // the widget's pixels in the target it is drawn into; its own
        // look changing also makes its target stale as a whole.
        bool const ownTarget = getDrawToTarget();
        if (ownChange_ || ownTarget)
            damageOwnerTarget_();
        if (ownChange_ && ownTarget)
            targetDamageAll_ = true;
        ownChange_ = false;
        // A hidden widget loses its repaint; showing it asks for a new one.
        if (getVisible(false))
            redraw_();
        dirty_ = false;
    }
}

void Widget::redraw_() {
    if (skin_)
        skin_->redraw();
    doRedrawDirty_ = true;
    addOnce(widgetsToDoRedraw_(), this);
    GUI const* gui = GUI::get();
    if (gui && gui->getDebugDraw()) {
        if (!debugSkin_) {
            debugSkin_ = new skin::Skin(this, true);
            debugSkin_->load("debugSkin");
        }
        debugSkin_->redraw();
    } else {
        delete debugSkin_;
        debugSkin_ = nullptr;
    }
}

void Widget::doRedraw() {
    if (doRedrawCallback_)
        doRedrawCallback_();
    if (doRedrawDirty_) {
        if (getVisible(false))
            doRedraw_();
        doRedrawDirty_ = false;
    }
}

void Widget::doRedraw_() {
    if (skin_)
        skin_->doRedraw();
    if (debugSkin_)
        debugSkin_->doRedraw();
}

// ---------------------------------------------------------------- draw protocol

void Widget::draw() {
    if (getVisible(false))
        drawModelView_();
}

void Widget::drawModelView_() {
    rastRenderer::ModelViewMatrixGuard guard;
    guard.setTranslate(static_cast<float>(position_.x), static_cast<float>(position_.y), 0.0f);
    drawClipped_();
}

void Widget::drawClipped_() {
    if (GUI::get()->getClippingEnabled()) {
        beginClip_();
        draw_();
        drawFocusRect_();
        endClip_();
    } else {
        draw_();
        drawFocusRect_();
    }
}

void Widget::draw_() {
    if (skin_)
        skin_->draw();
    if (debugSkin_)
        debugSkin_->draw();
}

void Widget::drawFocusRect_() {
    if (skin_)
        skin_->drawFocusRect();
}

void Widget::beginClip_() { rastRenderer::get()->pushClipRect(getClipRect_()); }

void Widget::endClip_() { rastRenderer::get()->popClipRect(); }

void Widget::parse() {
    if (getVisible(false))
        parse_();
}

void Widget::make(GraphicCommands* commands) {
    if (getVisible(false))
        makeModelView_(commands);
}

void Widget::makeParse(GraphicCommands* commands) {
    if (getVisible(false))
        makeParse_(commands);
}

void Widget::makeModelView_(GraphicCommands* commands) {
    GraphicCommandModelViewMatrixGuard guard(*commands);
    guard.setTranslate(static_cast<float>(position_.x), static_cast<float>(position_.y), 0.0f);
    makeClipped_(commands);
}

void Widget::makeClipped_(GraphicCommands* commands) {
    if (GUI::get()->getClippingEnabled()) {
        makeBeginClip_(commands);
        make_(commands);
        makeFocusRect_(commands);
        makeEndClip_(commands);
    } else {
        make_(commands);
        makeFocusRect_(commands);
    }
}

void Widget::make_(GraphicCommands* commands) {
    if (skin_)
        skin_->make(commands);
    if (debugSkin_)
        debugSkin_->make(commands);
}

void Widget::makeBeginClip_(GraphicCommands* commands) { commands->pushClipRect(getClipRect_()); }

void Widget::makeEndClip_(GraphicCommands* commands) { commands->popClipRect(); }

void Widget::makeFocusRect_(GraphicCommands* commands) {
    if (skin_)
        skin_->makeFocusRect(commands);
}

}  // namespace gui
