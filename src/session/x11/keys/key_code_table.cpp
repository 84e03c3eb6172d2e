#include "session/x11/keys/key_code_table.h"

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

struct Pair {
    uint16_t virtualKey;
    uint8_t x11KeyCode;
};

// Named after the keys of an American keyboard.
constexpr std::array table{
    Pair{0, 38},    // A
    Pair{1, 39},    // S
    Pair{2, 40},    // D
    Pair{3, 41},    // F
    Pair{4, 43},    // H
    Pair{5, 42},    // G
    Pair{6, 52},    // Z
    Pair{7, 53},    // X
    Pair{8, 54},    // C
    Pair{9, 55},    // V
    Pair{10, 94},   // ISO_Section
    Pair{11, 56},   // B
    Pair{12, 24},   // Q
    Pair{13, 25},   // W
    Pair{14, 26},   // E
    Pair{15, 27},   // R
    Pair{16, 29},   // Y
    Pair{17, 28},   // T
    Pair{18, 10},   // 1
    Pair{19, 11},   // 2
    Pair{20, 12},   // 3
    Pair{21, 13},   // 4
    Pair{22, 15},   // 6
    Pair{23, 14},   // 5
    Pair{24, 21},   // Equal
    Pair{25, 18},   // 9
    Pair{26, 16},   // 7
    Pair{27, 20},   // Minus
    Pair{28, 17},   // 8
    Pair{29, 19},   // 0
    Pair{30, 35},   // RightBracket
    Pair{31, 32},   // O
    Pair{32, 30},   // U
    Pair{33, 34},   // LeftBracket
    Pair{34, 31},   // I
    Pair{35, 33},   // P
    Pair{36, 36},   // Return
    Pair{37, 46},   // L
    Pair{38, 44},   // J
    Pair{39, 48},   // Quote
    Pair{40, 45},   // K
    Pair{41, 47},   // Semicolon
    Pair{42, 51},   // Backslash
    Pair{43, 59},   // Comma
    Pair{44, 61},   // Slash
    Pair{45, 57},   // N
    Pair{46, 58},   // M
    Pair{47, 60},   // Period
    Pair{48, 23},   // Tab
    Pair{49, 65},   // Space
    Pair{50, 49},   // Grave
    Pair{51, 22},   // Delete(Backspace)
    Pair{53, 9},    // Escape
    Pair{54, 134},  // RightCommand
    Pair{55, 133},  // Command
    Pair{56, 50},   // Shift
    Pair{57, 66},   // CapsLock
    Pair{58, 64},   // Option
    Pair{59, 37},   // Control
    Pair{60, 62},   // RightShift
    Pair{61, 108},  // RightOption
    Pair{62, 105},  // RightControl
    Pair{64, 195},  // F17
    Pair{65, 91},   // KP_Decimal
    Pair{67, 63},   // KP_Multiply
    Pair{69, 86},   // KP_Plus
    Pair{71, 77},   // KP_Clear
    Pair{72, 123},  // VolumeUp
    Pair{73, 122},  // VolumeDown
    Pair{74, 121},  // Mute
    Pair{75, 106},  // KP_Divide
    Pair{76, 104},  // KP_Enter
    Pair{78, 82},   // KP_Minus
    Pair{79, 196},  // F18
    Pair{80, 197},  // F19
    Pair{81, 125},  // KP_Equals
    Pair{82, 90},   // KP_0
    Pair{83, 87},   // KP_1
    Pair{84, 88},   // KP_2
    Pair{85, 89},   // KP_3
    Pair{86, 83},   // KP_4
    Pair{87, 84},   // KP_5
    Pair{88, 85},   // KP_6
    Pair{89, 79},   // KP_7
    Pair{90, 198},  // F20
    Pair{91, 80},   // KP_8
    Pair{92, 81},   // KP_9
    Pair{93, 132},  // JIS_Yen
    Pair{94, 97},   // JIS_Underscore
    Pair{95, 103},  // JIS_KP_Comma
    Pair{96, 71},   // F5
    Pair{97, 72},   // F6
    Pair{98, 73},   // F7
    Pair{99, 69},   // F3
    Pair{100, 74},  // F8
    Pair{101, 75},  // F9
    Pair{102, 131}, // JIS_Eisu
    Pair{103, 95},  // F11
    Pair{104, 130}, // JIS_Kana
    Pair{105, 191}, // F13
    Pair{106, 194}, // F16
    Pair{107, 192}, // F14
    Pair{109, 76},  // F10
    Pair{110, 135}, // ContextMenu
    Pair{111, 96},  // F12
    Pair{113, 193}, // F15
    Pair{114, 118}, // Help/Insert
    Pair{115, 110}, // Home
    Pair{116, 112}, // PageUp
    Pair{117, 119}, // ForwardDelete
    Pair{118, 70},  // F4
    Pair{119, 115}, // End
    Pair{120, 68},  // F2
    Pair{121, 117}, // PageDown
    Pair{122, 67},  // F1
    Pair{123, 113}, // Left
    Pair{124, 114}, // Right
    Pair{125, 116}, // Down
    Pair{126, 111}, // Up
};

} // namespace

std::optional<uint8_t> x11KeyCode(uint16_t virtualKey)
{
    const auto* found = std::find_if(
        table.begin(), table.end(), [virtualKey](const Pair& pair) { return pair.virtualKey == virtualKey; });
    if (found == table.end())
        return std::nullopt;
    return found->x11KeyCode;
}

std::optional<uint16_t> virtualKeyCode(uint32_t x11KeyCode)
{
    const auto* found = std::find_if(
        table.begin(), table.end(), [x11KeyCode](const Pair& pair) { return pair.x11KeyCode == x11KeyCode; });
    if (found == table.end())
        return std::nullopt;
    return found->virtualKey;
}

} // namespace corvandi
