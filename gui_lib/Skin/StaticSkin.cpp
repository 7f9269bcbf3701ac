#include "Skin/StaticSkin.h"

#include "rast/FrameBuffer.h"

namespace gui::skin {

rastTexture* StaticSkin::getTargetTexture() const { return getTarget() ? getTarget()->getTexture() : nullptr; }

}  // namespace gui::skin
