#pragma once

#include <algorithm>

namespace vurel_bench {

// The UI both toolkits build, in numbers: windows of 100 controls, each in
// two columns of five groups of two rows; a row is a label, a button, a check
// box, a button and a check box. 100 controls make one window, 10,000 make
// a hundred, cascaded over the screen so that every one of them is drawn.
constexpr int kScreenWidth = 1280;
constexpr int kScreenHeight = 720;
constexpr int kColumns = 2;
constexpr int kGroupsPerColumn = 5;
constexpr int kRowsPerGroup = 2;
constexpr int kControlsPerRow = 5;
constexpr int kControlsPerWindow = kColumns * kGroupsPerColumn * kRowsPerGroup * kControlsPerRow;

enum class ControlKind { Label, Button, CheckBox };

constexpr ControlKind kRowControls[kControlsPerRow] = {ControlKind::Label, ControlKind::Button, ControlKind::CheckBox,
                                                       ControlKind::Button, ControlKind::CheckBox};

inline int windowCount(int controls) { return std::max(1, controls / kControlsPerWindow); }

// Cascaded ten across and ten down; the last window made is on top.
inline int windowX(int index) { return 10 + (index % 10) * 44; }
inline int windowY(int index) { return 10 + (index / 10 % 10) * 26; }

// Short words for the texts, so that every control has a label of its own size.
inline char const* controlText(ControlKind kind, int index) {
    static char const* const labels[] = {"Volume", "Speed", "Quality", "Width", "Colour", "Layer", "Name", "Size"};
    static char const* const buttons[] = {"Apply", "Reset", "Open", "Save", "Close", "Undo", "Next", "Back"};
    static char const* const checks[] = {"Enable", "Loop", "Shadows", "Snap", "Grid", "Mute", "Lock", "Show"};
    switch (kind) {
    case ControlKind::Label:
        return labels[index % 8];
    case ControlKind::Button:
        return buttons[index % 8];
    case ControlKind::CheckBox:
        return checks[index % 8];
    }
    return "";
}

// The two texts of the one button that changes, and the extra size of the
// main window on every other frame of the relayout benchmark.
constexpr char const* kChangeTexts[2] = {"Cancel", "Apply"};
constexpr int kResizeX = 24;
constexpr int kResizeY = 12;
// The mouse crosses the main window in steps of this many pixels.
constexpr int kMouseStep = 7;

}  // namespace vurel_bench
