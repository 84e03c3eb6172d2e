// Long texts arrive in real applications to the last character, whatever the layout.

#include "typing_fixture.h"

#include "platform/linux/x11/modifier_masks.h"
#include "platform/x11/x11_session.h"

namespace corvandi::testing {
namespace {

constexpr int longText = 2000;

enum class CapsLock { off, on };

class TypingExactnessTest : public TypingTest,
                            public ::testing::WithParamInterface<std::tuple<TargetKind, const char*, CapsLock>> {
};

TEST_P(TypingExactnessTest, ALongMixedTextArrivesToTheLastCharacter)
{
    const auto [kind, layout, capsLock] = GetParam();
    ASSERT_TRUE(setLayout(QLatin1String(layout)));
    open(kind);
    const uint8_t locked = capsLock == CapsLock::on ? x11_mask::lock : x11_mask::none;
    setLocks(locked);

    const QString text = textFor(kind, longText);
    ASSERT_TRUE(insert(text));
    EXPECT_TRUE(holds(text));
    EXPECT_EQ(locks(), locked);
}

std::string describe(const ::testing::TestParamInfo<TypingExactnessTest::ParamType>& info)
{
    const auto [kind, layout, capsLock] = info.param;
    return nameOf(kind) + '_' + layout + (capsLock == CapsLock::on ? "_CapsLock" : "");
}

INSTANTIATE_TEST_SUITE_P(Everywhere, TypingExactnessTest,
                         ::testing::Combine(::testing::Values(TargetKind::terminal, TargetKind::gtkField,
                                                              TargetKind::qtField),
                                            ::testing::Values("us", "de", "fr"),
                                            ::testing::Values(CapsLock::off, CapsLock::on)),
                         describe);

} // namespace
} // namespace corvandi::testing
