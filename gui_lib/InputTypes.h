#pragma once

#include <cstdint>

namespace gui {

// Mouse buttons are the application's numbers; inside the toolkit only 1, the
// primary button, has a meaning. Others pass through to callbacks.
enum MouseButton : int32_t {
    MouseButtonNone = 0,
    MouseButtonLeft = 1,
    MouseButtonRight = 2,
    MouseButtonMiddle = 3,
};

// Keyboard buttons; names are in KeyboardButtons.h. The toolkit itself tests
// only the values listed here.
enum KeyboardButton : int32_t {
    KeyNone = 0,
    KeyBackspace = 8,
    KeyTab = 9,
    KeyReturn = 13,
    KeyEscape = 27,
    KeySpace = 32,
    KeyDelete = 127,
    KeyUp = 273,
    KeyDown = 274,
    KeyRight = 275,
    KeyLeft = 276,
    KeyInsert = 277,
    KeyHome = 278,
    KeyEnd = 279,
    KeyPageUp = 280,
    KeyPageDown = 281,
    KeyRightShift = 303,
    KeyLeftShift = 304,
    KeyRightCtrl = 305,
    KeyLeftCtrl = 306,
    KeyRightAlt = 307,
    KeyLeftAlt = 308,
    KeyPrintScreen = 316,
};

// Raw device records: the application fills them and its listeners read them.
// The toolkit copies them whole and looks only at x and y of the mouse record,
// which it rewrites into toolkit coordinates.
struct RawMouseInfo {
    int32_t x = 0;
    int32_t y = 0;
    int32_t buttons = 0;
    int32_t wheel = 0;
    uint64_t userData = 0;
};

struct RawKeyInfo {
    int32_t key = 0;
    int32_t scanCode = 0;
    int32_t modifiers = 0;
    uint32_t character = 0;
    bool pressed = false;
    uint64_t userData = 0;
};

}  // namespace gui
