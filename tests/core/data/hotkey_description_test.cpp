#include "core/data/settings.h"

#include "ports/key_codes.h"
#include "support/fake_user_defaults.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using testing::FakeUserDefaults;
using namespace modifier_flags;

class HotkeyDescription : public ::testing::Test {
protected:
    void setModifiers(uint64_t flags)
    {
        settings.setHotkeyControl((flags & control) != 0);
        settings.setHotkeyOption((flags & option) != 0);
        settings.setHotkeyShift((flags & shift) != 0);
        settings.setHotkeyCommand((flags & command) != 0);
    }

    FakeUserDefaults defaults;
    Settings settings{defaults};
};

TEST_F(HotkeyDescription, OfAFreshUserIsOptionAndSpace)
{
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("\u2325Space"));
}

TEST_F(HotkeyDescription, NamesEveryCombinationOfModifiersInOneOrder)
{
    settings.setHotkeyKeyCode(40);
    const auto symbol = [](uint64_t flags, uint64_t modifier, const char16_t* text) {
        return (flags & modifier) != 0 ? QString::fromUtf16(text) : QString();
    };
    for (const uint64_t left : {uint64_t{0}, control, option, control | option}) {
        for (const uint64_t right : {uint64_t{0}, shift, command, shift | command}) {
            const uint64_t flags = left | right;
            setModifiers(flags);
            EXPECT_EQ(settings.hotkeyDescription(), symbol(flags, control, u"\u2303") +
                                                        symbol(flags, option, u"\u2325") +
                                                        symbol(flags, shift, u"\u21E7") +
                                                        symbol(flags, command, u"\u2318") + QLatin1Char('K'));
        }
    }
}

TEST_F(HotkeyDescription, ShowsAllFourModifiersBeforeTheKey)
{
    setModifiers(control | option | shift | command);
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("⌃⌥⇧⌘Space"));
}

TEST_F(HotkeyDescription, WithoutModifiersIsTheKeyAlone)
{
    setModifiers(0);
    settings.setHotkeyKeyCode(96);
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("Key 96"));
    settings.setHotkeyKeyCode(0);
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("A"));
}

TEST_F(HotkeyDescription, OfANumberThatNoKeyHasIsStillAText)
{
    setModifiers(shift);
    settings.setHotkeyKeyCode(-1);
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("⇧Key -1"));
    settings.setHotkeyKeyCode(int64_t{1} << 40);
    EXPECT_EQ(settings.hotkeyDescription(), QStringLiteral("⇧Key 1099511627776"));
}

TEST_F(HotkeyDescription, IsReadFromTheStoredHotkey)
{
    defaults.persistent[QStringLiteral("hotkeyKeyCode")] = int64_t{53};
    defaults.persistent[QStringLiteral("hotkeyControl")] = true;
    EXPECT_EQ(Settings(defaults).hotkeyDescription(), QStringLiteral("⌃⌥Esc"));
}

TEST_F(HotkeyDescription, IsAnnouncedAfterEachChangeOfTheHotkeyWithTheNewText)
{
    std::vector<QString> seen;
    QObject::connect(&settings, &Settings::hotkeyDescriptionChanged,
                     [&] { seen.push_back(settings.hotkeyDescription()); });
    settings.setHotkeyKeyCode(2);
    settings.setHotkeyCommand(true);
    settings.setHotkeyOption(false);
    settings.setHotkeyShift(true);
    settings.setHotkeyControl(true);
    EXPECT_THAT(seen, ElementsAre(QStringLiteral("⌥D"), QStringLiteral("⌥⌘D"), QStringLiteral("⌘D"),
                                  QStringLiteral("⇧⌘D"), QStringLiteral("⌃⇧⌘D")));
}

TEST_F(HotkeyDescription, IsNotAnnouncedWhenTheHotkeyStaysAsItIs)
{
    bool isAnnounced = false;
    QObject::connect(&settings, &Settings::hotkeyDescriptionChanged, [&] { isAnnounced = true; });
    settings.setHotkeyKeyCode(49);
    settings.setHotkeyOption(true);
    settings.setSaveHistory(false);
    EXPECT_FALSE(isAnnounced);
}

} // namespace
} // namespace corvandi
