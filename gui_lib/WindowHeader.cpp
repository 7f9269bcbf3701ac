#include "WindowHeader.h"

#include <algorithm>

#include "Application.h"
#include "CloseButton.h"
#include "GUI.h"
#include "Skin/WindowSkins.h"
#include "WidgetHandler.h"
#include "WindowBase.h"
#include "WindowsManager.h"
#include "orm/Utf8.h"

namespace gui {

namespace {

// How much of the dragger stays on screen after a drag that ended outside.
constexpr int kOnScreenMargin = 20;

// The invisible widget that covers the header's inner area and moves the
// window while the primary button is held on it.
class Dragger : public Widget {
public:
    explicit Dragger(WindowBase& window) : window_(window) {}

    void onMouseDown(osg::Vec2i const& point, MouseButton button) override {
        Widget::onMouseDown(point, button);
        beginDrag_(point, button);
    }

    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override {
        Widget::onMouseDoubleClick(point, button);
        beginDrag_(point, button);
    }

    void onMouseMove(osg::Vec2i const& point) override {
        Widget::onMouseMove(point);
        if (!dragging_ || !window_.getDraggable())
            return;
        window_.setPosition(window_.getPosition() + (point - lastPosition_));
        lastPosition_ = point;
    }

    void onMouseUp(osg::Vec2i const& point, MouseButton button) override {
        Widget::onMouseUp(point, button);
        if (button != MouseButtonLeft || !dragging_)
            return;
        dragging_ = false;
        if (WindowsManager* manager = WindowsManager::get(window_.getSurfaceId()))
            manager->releaseMouse(handler());
        if (window_.checkOutOfScreenOnDrag())
            window_.setPosition(keptOnScreen_(window_.getPosition()));
    }

    void onMouseReleased() override {
        Widget::onMouseReleased();
        dragging_ = false;
    }

protected:
    virtual void beginDrag_(osg::Vec2i const& point, MouseButton button) {
        if (button != MouseButtonLeft)
            return;
        dragging_ = true;
        lastPosition_ = point;
        if (WindowsManager* manager = WindowsManager::get(window_.getSurfaceId()))
            manager->captureMouse(handler());
    }

private:
    // The window position clamped so that a margin of the dragger stays inside
    // the application window.
    osg::Vec2i keptOnScreen_(osg::Vec2i position) const {
        GUI const* gui = GUI::get();
        Application const* app = Application::get();
        if (!gui || !app)
            return position;
        osg::Vec2i const p = gui->getScreenPosition();
        float const f = gui->getScaleFactor();
        osg::Vec2i const screen(static_cast<int>(static_cast<float>(app->getSize().x) * f),
                                static_cast<int>(static_cast<float>(app->getSize().y) * f));
        osg::Vec2i const d = getSize();
        position.x = std::min(std::max(position.x, kOnScreenMargin - d.x - p.x), screen.x - p.x - kOnScreenMargin);
        position.y = std::min(std::max(position.y, kOnScreenMargin - d.y - p.y), screen.y - p.y - kOnScreenMargin);
        return position;
    }

    WindowBase& window_;
    bool dragging_ = false;
    osg::Vec2i lastPosition_;
};

}  // namespace

WindowHeader::WindowHeader(WindowBase& window) : window_(window) {
    setSkin_(new skin::WindowHeaderSkin(this));
    auto* dragger = new Dragger(window);
    dragger_ = dragger->handler();
    insertWidget_(dragger, -1);
}

skin::WindowHeaderSkin* WindowHeader::getHeaderSkin() const { return static_cast<skin::WindowHeaderSkin*>(skin_); }

Widget* WindowHeader::getDragger() const { return WidgetHandler::get(dragger_); }

int WindowHeader::getInnerState() const { return window_.getInnerState(); }

bool WindowHeader::getVisible() const { return visible_ && size_.y >= 1; }

void WindowHeader::setHasCloseButton(bool has) {
    hasCloseButton_ = has;
    if (has && !closeButton_) {
        closeButton_ = new CloseButton(window_, getHeaderSkin()->getCloseButtonSkin());
        // After the dragger, so that it is hit first.
        insertWidget_(closeButton_, -1);
    } else if (!has && closeButton_) {
        Widget::destroy(closeButton_);
        closeButton_ = nullptr;
    }
}

void WindowHeader::removeWidget_(Widget* widget) {
    // A close button destroyed from outside is forgotten.
    if (widget && widget == static_cast<Widget*>(closeButton_))
        closeButton_ = nullptr;
    Container::removeWidget_(widget);
}

void WindowHeader::onSizeChanged_(osg::Vec2i const& size) {
    Container::onSizeChanged_(size);
    layoutParts_();
}

void WindowHeader::updateSize_() {
    Container::updateSize_();
    layoutParts_();
}

void WindowHeader::layoutParts_() {
    skin::WindowHeaderData const* data = getHeaderSkin()->getHeaderData();
    Insets const insets = data ? data->getInsets() : Insets();
    osg::Vec2i const areaPosition(insets.left, insets.top);
    osg::Vec2i const areaSize(std::max(size_.x - insets.left - insets.right, 0),
                              std::max(size_.y - insets.top - insets.bottom, 0));
    if (data)
        setHasCloseButton(data->getHasCloseButton());
    if (closeButton_ && data) {
        closeButton_->setText(orm::iconv_utf8_to_wchar(data->getCloseButtonText()));
        // A square of the area's height, as far as the button's limits allow.
        closeButton_->setSize(osg::Vec2i(areaSize.y, areaSize.y));
        Align2 const align(data->getCloseButtonHorzAlign(), data->getCloseButtonVertAlign());
        osg::Recti const rect = align.calc(closeButton_->getSize(), areaSize);
        closeButton_->setPosition(areaPosition + rect.min);
        closeButton_->setSize(osg::Vec2i(rect.width(), rect.height()));
    }
    if (Widget* dragger = getDragger()) {
        dragger->setPosition(areaPosition);
        dragger->setSize(areaSize);
    }
}

}  // namespace gui
