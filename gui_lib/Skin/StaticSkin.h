#pragma once

#include "Skin/Skin.h"

class rastTexture;

namespace gui::skin {

// The painter of labels and pictures: a plain skin that also hands out the
// texture of its render target, so a picture of the widget can be reused.
class VUREL_EXPORT StaticSkin : public Skin {
public:
    StaticSkin(Widget* widget, bool createData) : Skin(widget, createData) {}

    // Null while the widget draws without a target.
    rastTexture* getTargetTexture() const;
};

}  // namespace gui::skin
