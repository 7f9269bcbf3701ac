#include "GalleryPopup.h"

namespace gallery {

GalleryPopup::GalleryPopup() {
    createHeaderAndView_();
    createWindowSkin_("popupSkin");
}

}  // namespace gallery
