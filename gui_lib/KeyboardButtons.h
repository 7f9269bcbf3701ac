#pragma once

#include "Export.h"
#include "InputTypes.h"
#include "orm/String.h"

namespace gui {

// Fills the two process-wide tables between key codes and key names. Called
// by the constructor of gui::Application; calling it again writes the same rows.
VUREL_EXPORT void registerKeyboardButtonsNames();

// The button of a name ("a", "f1", "page up", "[+]"...), 0 for an unknown
// name. Matching is exact and case-sensitive.
VUREL_EXPORT KeyboardButton getKeyboardButtonByName(orm::basic_string<char> const& name);

// The name of a registered button; an empty string for a code without a name.
VUREL_EXPORT char const* getKeyboardButtonName(KeyboardButton button);

}  // namespace gui
