#include "ports/key_codes.h"
#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/watched_chord.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace corvandi {
namespace {

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
