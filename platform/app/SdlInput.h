#pragma once

#include <cstdint>

#include "Export.h"
#include "InputTypes.h"

namespace gui {

// SDL's key codes as the toolkit's: ASCII keys as they are, the rest by the
// toolkit's table (arrows 273-276, insert to page down 277-281, F1-F15
// 282-296, keypad 256-272, modifiers 300-313, print screen 316...). Keys the
// toolkit has no code for give KeyNone.
VUREL_EXPORT KeyboardButton translateSdlKey(int32_t sdlKeycode);
// SDL's mouse buttons: left 1, right 2, middle 3; others pass on as SDL numbers them.
VUREL_EXPORT MouseButton translateSdlButton(int sdlButton);

}  // namespace gui
