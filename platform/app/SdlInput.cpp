#include "app/SdlInput.h"

#include <SDL.h>

namespace gui {

namespace {

struct KeyRow {
    SDL_Keycode sdl;
    int code;
};

// Keys outside ASCII. Keypad digits are listed one by one: SDL puts 0 after 9.
constexpr KeyRow kKeys[] = {
    {SDLK_KP_0, 256},          {SDLK_KP_1, 257},          {SDLK_KP_2, 258},         {SDLK_KP_3, 259},
    {SDLK_KP_4, 260},          {SDLK_KP_5, 261},          {SDLK_KP_6, 262},         {SDLK_KP_7, 263},
    {SDLK_KP_8, 264},          {SDLK_KP_9, 265},          {SDLK_KP_PERIOD, 266},    {SDLK_KP_DIVIDE, 267},
    {SDLK_KP_MULTIPLY, 268},   {SDLK_KP_MINUS, 269},      {SDLK_KP_PLUS, 270},      {SDLK_KP_ENTER, 271},
    {SDLK_KP_EQUALS, 272},     {SDLK_UP, 273},            {SDLK_DOWN, 274},         {SDLK_RIGHT, 275},
    {SDLK_LEFT, 276},          {SDLK_INSERT, 277},        {SDLK_HOME, 278},         {SDLK_END, 279},
    {SDLK_PAGEUP, 280},        {SDLK_PAGEDOWN, 281},      {SDLK_F13, 294},          {SDLK_F14, 295},
    {SDLK_F15, 296},           {SDLK_NUMLOCKCLEAR, 300},  {SDLK_CAPSLOCK, 301},     {SDLK_SCROLLLOCK, 302},
    {SDLK_RSHIFT, 303},        {SDLK_LSHIFT, 304},        {SDLK_RCTRL, 305},        {SDLK_LCTRL, 306},
    {SDLK_RALT, 307},          {SDLK_LALT, 308},          {SDLK_LGUI, 311},         {SDLK_RGUI, 312},
    {SDLK_MODE, 313},          {SDLK_HELP, 315},          {SDLK_PRINTSCREEN, 316},  {SDLK_SYSREQ, 317},
    {SDLK_MENU, 319},          {SDLK_APPLICATION, 319},   {SDLK_POWER, 320},        {SDLK_UNDO, 322},
    {SDLK_PAUSE, 19},          {SDLK_CLEAR, 12},
};

}  // namespace

KeyboardButton translateSdlKey(int32_t sdlKeycode) {
    // SDL's codes below 128 are the ASCII characters, letters in lower case, as the toolkit's are.
    if (sdlKeycode > 0 && sdlKeycode < 128)
        return static_cast<KeyboardButton>(sdlKeycode);
    if (sdlKeycode >= SDLK_F1 && sdlKeycode <= SDLK_F12)
        return static_cast<KeyboardButton>(282 + (sdlKeycode - SDLK_F1));
    for (KeyRow const& row : kKeys)
        if (row.sdl == sdlKeycode)
            return static_cast<KeyboardButton>(row.code);
    return KeyNone;
}

MouseButton translateSdlButton(int sdlButton) {
    switch (sdlButton) {
    case SDL_BUTTON_LEFT:
        return MouseButtonLeft;
    case SDL_BUTTON_RIGHT:
        return MouseButtonRight;
    case SDL_BUTTON_MIDDLE:
        return MouseButtonMiddle;
    default:
        return static_cast<MouseButton>(sdlButton);
    }
}

}  // namespace gui
