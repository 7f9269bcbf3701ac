#pragma once

#include "WindowBase.h"

namespace gui {

// A window drawn beneath all others that never takes the mouse: HUD-like
// content stacked by z-order among the overlays of its surface.
class VUREL_EXPORT OverlayWindow : public WindowBase {
public:
    OverlayWindow();
    ~OverlayWindow() override;

    char const* getWidgetType() const override { return "OverlayWindow"; }
    Widget* clone() const override;

    virtual void setZOrder(int zOrder);
    virtual int getZOrder() const { return zOrder_; }

    // The work of Container, then a clone of each widget of the view into the target's view.
    void copyParams(OverlayWindow* target) const;

protected:
    void onVisibleChanged_(bool visible) override;

    virtual void onZOrderChanged_(int zOrder);

    int zOrder_ = 0;
};

}  // namespace gui
