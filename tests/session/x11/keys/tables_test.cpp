#include "ports/key_codes.h"
#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/keyboard_loan.h"
#include "session/x11/keys/watched_chord.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

/// The virtual key codes and the kernel's numbers of the keys, as their platforms publish them.
struct PublishedKey {
    uint16_t virtualKey;
    uint8_t kernelKey;
};

constexpr std::array<PublishedKey, 119> publishedKeys{{
    {0, 30},    // A
    {1, 31},    // S
    {2, 32},    // D
    {3, 33},    // F
    {4, 35},    // H
    {5, 34},    // G
    {6, 44},    // Z
    {7, 45},    // X
    {8, 46},    // C
    {9, 47},    // V
    {10, 86},   // ISO_Section
    {11, 48},   // B
    {12, 16},   // Q
    {13, 17},   // W
    {14, 18},   // E
    {15, 19},   // R
    {16, 21},   // Y
    {17, 20},   // T
    {18, 2},    // 1
    {19, 3},    // 2
    {20, 4},    // 3
    {21, 5},    // 4
    {22, 7},    // 6
    {23, 6},    // 5
    {24, 13},   // Equal
    {25, 10},   // 9
    {26, 8},    // 7
    {27, 12},   // Minus
    {28, 9},    // 8
    {29, 11},   // 0
    {30, 27},   // RightBracket
    {31, 24},   // O
    {32, 22},   // U
    {33, 26},   // LeftBracket
    {34, 23},   // I
    {35, 25},   // P
    {36, 28},   // Return
    {37, 38},   // L
    {38, 36},   // J
    {39, 40},   // Quote
    {40, 37},   // K
    {41, 39},   // Semicolon
    {42, 43},   // Backslash
    {43, 51},   // Comma
    {44, 53},   // Slash
    {45, 49},   // N
    {46, 50},   // M
    {47, 52},   // Period
    {48, 15},   // Tab
    {49, 57},   // Space
    {50, 41},   // Grave
    {51, 14},   // Delete(Backspace)
    {53, 1},    // Escape
    {54, 126},  // RightCommand
    {55, 125},  // Command
    {56, 42},   // Shift
    {57, 58},   // CapsLock
    {58, 56},   // Option
    {59, 29},   // Control
    {60, 54},   // RightShift
    {61, 100},  // RightOption
    {62, 97},   // RightControl
    {64, 187},  // F17
    {65, 83},   // KP_Decimal
    {67, 55},   // KP_Multiply
    {69, 78},   // KP_Plus
    {71, 69},   // KP_Clear
    {72, 115},  // VolumeUp
    {73, 114},  // VolumeDown
    {74, 113},  // Mute
    {75, 98},   // KP_Divide
    {76, 96},   // KP_Enter
    {78, 74},   // KP_Minus
    {79, 188},  // F18
    {80, 189},  // F19
    {81, 117},  // KP_Equals
    {82, 82},   // KP_0
    {83, 79},   // KP_1
    {84, 80},   // KP_2
    {85, 81},   // KP_3
    {86, 75},   // KP_4
    {87, 76},   // KP_5
    {88, 77},   // KP_6
    {89, 71},   // KP_7
    {90, 190},  // F20
    {91, 72},   // KP_8
    {92, 73},   // KP_9
    {93, 124},  // JIS_Yen
    {94, 89},   // JIS_Underscore
    {95, 95},   // JIS_KP_Comma
    {96, 63},   // F5
    {97, 64},   // F6
    {98, 65},   // F7
    {99, 61},   // F3
    {100, 66},  // F8
    {101, 67},  // F9
    {102, 123}, // JIS_Eisu
    {103, 87},  // F11
    {104, 122}, // JIS_Kana
    {105, 183}, // F13
    {106, 186}, // F16
    {107, 184}, // F14
    {109, 68},  // F10
    {110, 127}, // ContextMenu
    {111, 88},  // F12
    {113, 185}, // F15
    {114, 110}, // Help/Insert
    {115, 102}, // Home
    {116, 104}, // PageUp
    {117, 111}, // ForwardDelete
    {118, 62},  // F4
    {119, 107}, // End
    {120, 60},  // F2
    {121, 109}, // PageDown
    {122, 59},  // F1
    {123, 105}, // Left
    {124, 106}, // Right
    {125, 108}, // Down
    {126, 103}, // Up
}};

TEST(KeyCodeTable, HoldsWhatThePlatformsPublish)
{
    constexpr int fromKernelToX = 8;
    for (const PublishedKey& key : publishedKeys)
        EXPECT_EQ(x11KeyCode(key.virtualKey), key.kernelKey + fromKernelToX) << key.virtualKey;
}

TEST(KeyCodeTable, NamesTheKeysThatTheProgramNames)
{
    EXPECT_EQ(x11KeyCode(virtual_key::space), 65);
    EXPECT_EQ(x11KeyCode(virtual_key::v), 55);
    EXPECT_EQ(x11KeyCode(0), 38) << "A";
    EXPECT_EQ(x11KeyCode(96), 71) << "F5";
}

TEST(KeyCodeTable, LeadsBackFromEveryKeyToItself)
{
    int keys = 0;
    for (uint16_t virtualKey = 0; virtualKey < 256; ++virtualKey) {
        if (const auto keyCode = x11KeyCode(virtualKey)) {
            EXPECT_EQ(virtualKeyCode(*keyCode), virtualKey);
            ++keys;
        }
    }
    EXPECT_EQ(keys, 119);
}

TEST(KeyCodeTable, KnowsNoKeyThatXCannotName)
{
    EXPECT_FALSE(x11KeyCode(63)) << "Fn";
    EXPECT_FALSE(x11KeyCode(52));
    EXPECT_FALSE(x11KeyCode(65535));
    EXPECT_FALSE(virtualKeyCode(0));
    EXPECT_FALSE(virtualKeyCode(400));
}

TEST(BorrowedKeyboard, ComesBackFromItsNumbers)
{
    BorrowedKeyboard borrowed;
    EXPECT_EQ(borrowedIn(wordsFor(borrowed)), borrowed);
    borrowed.locks = x11_mask::lock;
    borrowed.stickyOptions = 0;
    borrowed.hasModifiersDown = true;
    borrowed.characters[97] = KeySymbols{{2, 0, 0, 0}, 1, 4, {0x1004F60, 0, 0xE4, 0}, 0};
    borrowed.characters[255] = KeySymbols{{1, 0, 0, 0}, 1, 2, {0x100597D, 0}, 0};
    EXPECT_EQ(borrowedIn(wordsFor(borrowed)), borrowed);
}

TEST(BorrowedKeyboard, IsNotTakenFromNumbersThatMeanNone)
{
    EXPECT_FALSE(borrowedIn({}));
    EXPECT_FALSE(borrowedIn({1, 2, 3}));
    EXPECT_FALSE(borrowedIn({2, 0, 0, 0, 0}));
    // Cut off in the middle of a key.
    EXPECT_EQ(borrowedIn({1, 0, 0, 0, 9, 97, 4, 0xFFFFFFFF, 1})->characters.size(), 1U);
    EXPECT_TRUE(borrowedIn({1, 0, 0, 0, 9, 97})->characters.empty());
}

TEST(ModifierMasks, TranslateBothWays)
{
    using namespace modifier_flags;
    EXPECT_EQ(x11Mask(option), x11_mask::alt);
    EXPECT_EQ(x11Mask(command | shift), x11_mask::super | x11_mask::shift);
    for (const uint64_t flags : {uint64_t{0}, control, option | shift, command | option | control | shift})
        EXPECT_EQ(modifierFlags(x11Mask(flags)), flags);
}

TEST(ModifierMasks, LeaveOutWhatTheOtherSideDoesNotKnow)
{
    EXPECT_EQ(x11Mask(0x800100), x11_mask::none);
    EXPECT_EQ(modifierFlags(x11_mask::lock | x11_mask::numLock | x11_mask::level3), 0U);
}

TEST(ModifierMasks, EachModifierKeyHasItsOwnOnBothSides)
{
    for (const auto& [keys, mask] :
         {std::pair(std::pair(58, 61), x11_mask::alt), std::pair(std::pair(59, 62), x11_mask::control),
          std::pair(std::pair(56, 60), x11_mask::shift), std::pair(std::pair(55, 54), x11_mask::super)}) {
        EXPECT_EQ(modifierOf(static_cast<uint16_t>(keys.first)), mask);
        EXPECT_EQ(modifierOf(static_cast<uint16_t>(keys.second)), mask);
    }
    EXPECT_EQ(modifierOf(virtual_key::space), x11_mask::none);
}

TEST(ModifierMasks, ThoseThatLackOneOfTheRequired)
{
    const auto withoutAlt = masksLacking(x11_mask::alt);
    EXPECT_EQ(withoutAlt.size(), 16U);
    EXPECT_TRUE(std::none_of(withoutAlt.begin(), withoutAlt.end(),
                             [](uint32_t mask) { return mask & x11_mask::alt; }));
    EXPECT_EQ(masksLacking(x11_mask::alt | x11_mask::control).size(), 24U);
    EXPECT_THAT(masksLacking(x11_mask::none), ::testing::IsEmpty());
}

TEST(ModifierMasks, AllThatContainOneAre128AndAllAre256)
{
    const auto withAlt = masksContaining(x11_mask::alt);
    EXPECT_EQ(withAlt.size(), 128U);
    EXPECT_TRUE(
        std::all_of(withAlt.begin(), withAlt.end(), [](uint32_t mask) { return mask & x11_mask::alt; }));
    EXPECT_EQ(masksContaining(x11_mask::none).size(), 256U);
    EXPECT_EQ(masksContaining(x11_mask::alt | x11_mask::control).size(), 64U);
}

} // namespace
} // namespace corvandi
