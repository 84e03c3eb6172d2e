#include "platform/linux/x11/typed_text.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

TEST(TypedText, OrdinaryCharactersAreThemselves)
{
    EXPECT_EQ(typedCharacters(u"aÄ“你\u00A0"), U"aÄ“你\u00A0");
    EXPECT_EQ(typedCharacters(u""), U"");
}

TEST(TypedText, ASurrogatePairIsOneCharacter)
{
    EXPECT_EQ(typedCharacters(u"x\U0001F600y\U0010FFFD"), U"x\U0001F600y\U0010FFFD");
}

TEST(TypedText, EveryLineBreakIsOneReturn)
{
    EXPECT_EQ(typedCharacters(u"a\nb\rc\r\nd\n\re"), U"a\nb\nc\nd\n\ne");
}

TEST(TypedText, WhatNoKeyboardTypesIsLeftOut)
{
    const char16_t units[] = {u'a', 0, 0x1B, 0x7F, 0x85, 0xD83D, u'b', 0xDE00, 0xD83D, 0xFFFF, 0xFDD0, u'c'};
    EXPECT_EQ(typedCharacters({units, std::size(units)}), U"abc");
    EXPECT_EQ(typedCharacters(u"a\tb"), U"a\tb");
}

TEST(TypedText, AHighSurrogateAtTheEndIsLeftOut)
{
    const char16_t units[] = {u'a', 0xD83D};
    EXPECT_EQ(typedCharacters({units, std::size(units)}), U"a");
}

} // namespace
} // namespace corvandi
