#pragma once

#include <cstdint>

#include "Export.h"
#include "orm/String.h"

namespace gui {

// The mouse callbacks a widget raises; 0 is no callback.
enum MouseCallbackType : int32_t {
    MouseCallbackNone = 0,
    MouseCallbackMove = 1,        // "move"
    MouseCallbackDown = 2,        // "down"
    MouseCallbackDoubleDown = 3,  // "double down"
    MouseCallbackUp = 4,          // "up"
    MouseCallbackReleased = 5,    // "released"
    MouseCallbackEnter = 6,       // "enter"
    MouseCallbackLeave = 7,       // "leave"
};

// The keyboard callbacks a widget raises; 0 is no callback.
enum KeyboardCallbackType : int32_t {
    KeyboardCallbackNone = 0,
    KeyboardCallbackDown = 1,  // "down"
    KeyboardCallbackChar = 2,  // "char"
    KeyboardCallbackUp = 3,    // "up"
};

// The row callbacks of a grid; 0 is no callback.
enum GridRowCallbackType : int32_t {
    GridRowCallbackNone = 0,
    GridRowCallbackSelected = 1,  // "grid row selected"
    GridRowCallbackHovered = 2,   // "grid row hovered"
};

// Kinds by their text names, exact and case-sensitive; 0 for any other text.
VUREL_EXPORT MouseCallbackType getMouseCallbackType(orm::basic_string<char> const& name);
VUREL_EXPORT KeyboardCallbackType getKeyboardCallbackType(orm::basic_string<char> const& name);
VUREL_EXPORT GridRowCallbackType getGridRowCallbackType(orm::basic_string<char> const& name);

// The id of a widget callback kind. A text seen for the first time gets the
// next free id, starting at 0, so ids depend on the order of first lookup and
// must never be stored beyond the process. Look an id up once and keep it.
VUREL_EXPORT int getWidgetCallbackType(orm::basic_string<char> const& name);

}  // namespace gui
