#pragma once

#include "WindowBase.h"

namespace gui {

// A window that no manager shows: the application draws it into a target of
// its own through gui::GUI::drawOffscreenWindow.
class VUREL_EXPORT OffscreenWindow : public WindowBase {
public:
    OffscreenWindow();

    virtual void setZOrder(int zOrder);
    virtual int getZOrder() const { return zOrder_; }

protected:
    virtual void onZOrderChanged_(int zOrder) { zOrder_ = zOrder; }

    int zOrder_ = 0;
};

}  // namespace gui
