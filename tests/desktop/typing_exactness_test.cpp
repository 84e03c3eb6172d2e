// Long texts arrive in real applications to the last character, whatever the layout.

#include "typing_fixture.h"

namespace corvandi::testing {
namespace {

constexpr int longText = 2000;

enum class CapsLock { off, on };

class TypingExactnessTest
    : public TypingTest,
      public ::testing::WithParamInterface<std::tuple<TargetKind, const char*, CapsLock>> {};

TEST_P(TypingExactnessTest, ALongMixedTextArrivesToTheLastCharacter)
{
    const auto [kind, layout, capsLock] = GetParam();
    ASSERT_TRUE(setLayout(QLatin1String(layout)));
    desk.open(kind);
    const uint8_t locked = capsLock == CapsLock::on ? x11_mask::lock : x11_mask::none;
    desk.setLocks(locked);

    const QString text = mixedText(longText);
    ASSERT_TRUE(desk.insert(text));
    EXPECT_TRUE(holds(text));
    EXPECT_EQ(desk.locks(), locked);
}

std::string describe(const ::testing::TestParamInfo<TypingExactnessTest::ParamType>& info)
{
    const auto [kind, layout, capsLock] = info.param;
    return nameOf(kind) + '_' + layout + (capsLock == CapsLock::on ? "_CapsLock" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Everywhere, TypingExactnessTest,
    ::testing::Combine(::testing::Values(TargetKind::terminal, TargetKind::gtkField, TargetKind::qtField),
                       ::testing::Values("us", "de", "fr"), ::testing::Values(CapsLock::off, CapsLock::on)),
    describe);

class TooManyCharactersTest : public TypingEverywhereTest {};

TEST_P(TooManyCharactersTest, AreNotTypedButPastedWhole)
{
    const QString text = QStringLiteral("Zu viel: ") + foreignCharacters(200);
    EXPECT_EQ(desk.keyboard().createSource(text), nullptr);
    ASSERT_TRUE(desk.insert(text));
    EXPECT_TRUE(holds(text));
    // What fits is typed as ever, behind it.
    const QString more = QStringLiteral(" und „mehr“");
    ASSERT_TRUE(desk.insert(more));
    EXPECT_TRUE(holds(text + more));
}

TEST_P(TooManyCharactersTest, AsManyAsThereIsRoomForAreTyped)
{
    constexpr int room = 72;
    const QString text = foreignCharacters(room);
    ASSERT_NE(desk.keyboard().createSource(text), nullptr);
    EXPECT_EQ(desk.keyboard().createSource(text + QChar(0x20AC)), nullptr);
    ASSERT_TRUE(desk.insert(text + text));
    EXPECT_TRUE(holds(text + text));
}

INSTANTIATE_TEST_SUITE_P(Fields, TooManyCharactersTest,
                         ::testing::Values(TargetKind::gtkField, TargetKind::qtField),
                         [](const auto& test) { return nameOf(test.param); });

} // namespace
} // namespace corvandi::testing
