#include "OffscreenWindow.h"

namespace gui {

OffscreenWindow::OffscreenWindow() {
    createHeaderAndView_();
    createWindowSkin_("windowSkin");
}

void OffscreenWindow::setZOrder(int zOrder) {
    if (zOrder != zOrder_)
        onZOrderChanged_(zOrder);
}

}  // namespace gui
