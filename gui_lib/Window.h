#pragma once

#include "WindowBase.h"

namespace gui {

// The ordinary window: header, view and "windowSkin", stacked among the
// normal windows of its surface by z-order and brought forward on focus.
class VUREL_EXPORT Window : public WindowBase {
public:
    Window();
    ~Window() override;

    char const* getWidgetType() const override { return "Window"; }
    Widget* clone() const override;

    virtual void setZOrder(int zOrder);
    virtual int getZOrder() const { return zOrder_; }
    // A transparent window lets the mouse pass through to the windows below.
    virtual void setTransparentForUserInput(bool transparent);
    virtual bool getTransparentForUserInput() const { return transparentForUserInput_; }

    // The work of Container, then a clone of each widget of the view into the target's view.
    void copyParams(Window* target) const;

protected:
    void onVisibleChanged_(bool visible) override;
    void onFocusChanged_(bool focused) override;

    virtual void onZOrderChanged_(int zOrder);

    int zOrder_ = 0;
    bool transparentForUserInput_ = false;
};

}  // namespace gui
