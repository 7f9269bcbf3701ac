#include "KeyboardButtons.h"

#include <functional>
#include <initializer_list>
#include <unordered_map>

#include "orm/Allocator.h"

namespace gui {

namespace {

using NameByButton = std::unordered_map<KeyboardButton, orm::string, std::hash<KeyboardButton>,
                                        std::equal_to<KeyboardButton>,
                                        orm::allocator<std::pair<KeyboardButton const, orm::string>>>;
using ButtonByName = std::unordered_map<orm::string, KeyboardButton, std::hash<orm::string>,
                                        std::equal_to<orm::string>,
                                        orm::allocator<std::pair<orm::string const, KeyboardButton>>>;

// Both tables live for the whole process. Map nodes never move, so the names
// handed out by getKeyboardButtonName stay valid.
NameByButton& namesByButton() {
    static NameByButton names;
    return names;
}

ButtonByName& buttonsByName() {
    static ButtonByName buttons;
    return buttons;
}

void addRow(int code, orm::string const& name) {
    KeyboardButton const button = static_cast<KeyboardButton>(code);
    // Only a differing row is written, so that names already handed out keep
    // their storage when the tables are filled again.
    auto const [nameIt, newName] = namesByButton().try_emplace(button, name);
    if (!newName && nameIt->second != name)
        nameIt->second = name;
    auto const [buttonIt, newButton] = buttonsByName().try_emplace(name, button);
    if (!newButton)
        buttonIt->second = button;
}

// Consecutive codes starting at `first`, one name each.
void addRows(int first, std::initializer_list<char const*> names) {
    int code = first;
    for (char const* name : names)
        addRow(code++, name);
}

// Codes named by their own ASCII character.
void addCharacterRows(int first, int last) {
    for (int code = first; code <= last; ++code)
        addRow(code, orm::string(1, static_cast<char>(code)));
}

// Codes named "<prefix><index><suffix>", the index counting from `firstIndex`.
void addNumberedRows(int first, int last, char const* prefix, int firstIndex, char const* suffix = "") {
    for (int code = first; code <= last; ++code)
        addRow(code, orm::string::format("%s%d%s", prefix, firstIndex + code - first, suffix));
}

}  // namespace

void registerKeyboardButtonsNames() {
    addRow(8, "backspace");
    addRow(9, "tab");
    addRow(12, "clear");
    addRow(13, "return");
    addRow(19, "pause");
    addRow(27, "escape");
    addRow(32, "space");
    addCharacterRows(33, 36);  // 37, '%', has no name
    addCharacterRows(38, 47);
    addCharacterRows(48, 57);
    addCharacterRows(58, 64);
    addCharacterRows(91, 96);
    addCharacterRows(97, 122);
    addRow(127, "delete");
    addNumberedRows(160, 255, "world ", 0);
    addNumberedRows(256, 265, "[", 0, "]");
    addRows(266, {"[.]", "[/]", "[*]", "[-]", "[+]"});
    addRows(271, {"enter", "equals"});
    addRows(273, {"up", "down", "right", "left"});
    addRows(277, {"insert", "home", "end", "page up", "page down"});
    addNumberedRows(282, 296, "f", 1);
    addRows(300, {"numlock", "caps lock", "scroll lock"});
    addRows(303, {"right shift", "left shift", "right ctrl", "left ctrl"});
    addRows(307, {"right alt", "left alt", "right meta", "left meta"});
    addRows(311, {"left super", "right super"});
    addRows(313, {"alt gr", "compose", "help", "print screen", "sys req", "break", "menu", "power", "euro", "undo"});
}

KeyboardButton getKeyboardButtonByName(orm::basic_string<char> const& name) {
    ButtonByName const& buttons = buttonsByName();
    auto const found = buttons.find(name);
    return found != buttons.end() ? found->second : KeyNone;
}

char const* getKeyboardButtonName(KeyboardButton button) {
    NameByButton const& names = namesByButton();
    auto const found = names.find(button);
    return found != names.end() ? found->second.c_str() : "";
}

}  // namespace gui
