#pragma once

#include <cstdint>

#include "Export.h"
#include "Skin/Bkg.h"
#include "Skin/Image.h"
#include "Skin/Text.h"

struct lua_State;

namespace gui::skin {

// The pointer state of a widget: the first key of a skin's state table.
enum InteractiveState : int32_t {
    Released = 0,
    Hover = 1,
    Pressed = 2,
    Disabled = 3,
    InteractiveStateCount = 4,
};

// The look of a widget in one (interactive, inner) state: any of a
// background, a picture and a text. A part whose flag is false is absent, and
// the lookup of Data falls back for it.
class VUREL_EXPORT StateInfo {
public:
    StateInfo() = default;
    virtual ~StateInfo() = default;

    // Reads the table on top of the stack: "bkg", "picture", "text". A part
    // that is absent or no table clears its flag.
    virtual void loadFromLua(lua_State* L);
    // Writes the present parts into the table on top of the stack.
    virtual void saveToLua(lua_State* L) const;

    bool hasBkg = false;
    bool hasPicture = false;
    bool hasText = false;
    Bkg::Info bkg;
    Image::Info picture;
    Text::Info text;
};

}  // namespace gui::skin
