#pragma once

#include "Container.h"

namespace gui {

class CloseButton;
class WindowBase;

namespace skin {
class WindowHeaderSkin;
}

// The title strip of a window. A dragger as large as its inner area moves the
// window; the close button, when the skin asks for one, sits on top of it.
class VUREL_EXPORT WindowHeader : public Container {
public:
    explicit WindowHeader(WindowBase& window);

    using Container::getVisible;
    int getInnerState() const override;

    // Own flag, and a height of at least one pixel.
    virtual bool getVisible() const;

    WindowBase& getWindow() const { return window_; }
    CloseButton* getCloseButton() const { return closeButton_; }
    bool getHasCloseButton() const { return hasCloseButton_; }
    // True makes the close button from the header skin's close button skin;
    // false destroys it.
    void setHasCloseButton(bool has);
    skin::WindowHeaderSkin* getHeaderSkin() const;
    Widget* getDragger() const;

protected:
    void onSizeChanged_(osg::Vec2i const& size) override;
    // A skin change (insets, close button placement) lays the parts out again.
    void updateSize_() override;
    void removeWidget_(Widget* widget) override;

    // Places the close button and the dragger inside the insets.
    void layoutParts_();

    WindowBase& window_;
    CloseButton* closeButton_ = nullptr;
    WidgetHandler* dragger_ = nullptr;
    bool hasCloseButton_ = false;
};

}  // namespace gui
