#include "CallbackTypes.h"

#include <functional>
#include <string_view>
#include <unordered_map>

#include "orm/Allocator.h"

namespace gui {

namespace {

template <class T>
struct NamedType {
    std::string_view name;
    T type;
};

constexpr NamedType<MouseCallbackType> kMouseTypes[] = {
    {"move", MouseCallbackMove},         {"down", MouseCallbackDown},   {"double down", MouseCallbackDoubleDown},
    {"up", MouseCallbackUp},             {"released", MouseCallbackReleased},
    {"enter", MouseCallbackEnter},       {"leave", MouseCallbackLeave},
};

constexpr NamedType<KeyboardCallbackType> kKeyboardTypes[] = {
    {"down", KeyboardCallbackDown},
    {"char", KeyboardCallbackChar},
    {"up", KeyboardCallbackUp},
};

constexpr NamedType<GridRowCallbackType> kGridRowTypes[] = {
    {"grid row selected", GridRowCallbackSelected},
    {"grid row hovered", GridRowCallbackHovered},
};

template <class T, size_t N>
T findType(NamedType<T> const (&table)[N], std::string_view name) {
    for (NamedType<T> const& entry : table)
        if (entry.name == name)
            return entry.type;
    return T(0);
}

using WidgetCallbackMap = std::unordered_map<orm::string, int, std::hash<orm::string>, std::equal_to<orm::string>,
                                             orm::allocator<std::pair<orm::string const, int>>>;

}  // namespace

MouseCallbackType getMouseCallbackType(orm::basic_string<char> const& name) { return findType(kMouseTypes, name); }

KeyboardCallbackType getKeyboardCallbackType(orm::basic_string<char> const& name) {
    return findType(kKeyboardTypes, name);
}

GridRowCallbackType getGridRowCallbackType(orm::basic_string<char> const& name) {
    return findType(kGridRowTypes, name);
}

int getWidgetCallbackType(orm::basic_string<char> const& name) {
    static WidgetCallbackMap ids;
    static int nextId = 0;
    auto const found = ids.find(name);
    if (found != ids.end())
        return found->second;
    ids.emplace(name, nextId);
    return nextId++;
}

}  // namespace gui
