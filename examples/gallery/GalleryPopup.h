#pragma once

#include "PopupWindow.h"

namespace gallery {

// The gallery's popup menu. A popup window brings no look or parts of its
// own, so this one makes a header and a view like the other windows and
// takes "popupSkin" from the skin script; its content comes from a resource
// loaded into it.
class GalleryPopup : public gui::PopupWindow {
public:
    GalleryPopup();
    ~GalleryPopup() override = default;

    char const* getWidgetType() const override { return "GalleryPopup"; }
};

}  // namespace gallery
