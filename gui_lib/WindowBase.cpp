#include "WindowBase.h"

namespace gui {

char const* const WindowBase::closeCallbackName = "window close";

// Every window starts hidden.
WindowBase::WindowBase() { visible_ = false; }

WindowBase::~WindowBase() = default;

void WindowBase::setSurfaceId(int surfaceId) {
    if (surfaceId == surfaceId_)
        return;
    if (visible_)
        setVisible(false);
    surfaceId_ = surfaceId;
}

}  // namespace gui
