#include "core/data/settings.h"

#include "support/fake_user_defaults.h"

#include <gtest/gtest.h>

#include <functional>

namespace corvandi {
namespace {

using testing::FakeUserDefaults;
using Writes = std::vector<std::pair<QString, DefaultsValue>>;

TEST(Settings, AFreshUserHasOptionAndSpaceAndTheUsualSwitches)
{
    FakeUserDefaults defaults;
    const Settings settings(defaults);
    EXPECT_EQ(settings.hotkeyKeyCode(), 49);
    EXPECT_TRUE(settings.hotkeyOption());
    EXPECT_FALSE(settings.hotkeyCommand());
    EXPECT_FALSE(settings.hotkeyShift());
    EXPECT_FALSE(settings.hotkeyControl());
    EXPECT_TRUE(settings.autoPunctuation());
    EXPECT_FALSE(settings.removeDisfluencies());
    EXPECT_FALSE(settings.cleanUpSentences());
    EXPECT_TRUE(settings.saveHistory());
    EXPECT_EQ(settings.insertion(), InsertionMethod::type);
}

TEST(Settings, NothingIsWrittenUntilTheUserChangesSomething)
{
    FakeUserDefaults defaults;
    const Settings settings(defaults);
    EXPECT_TRUE(defaults.writes.empty());
    EXPECT_TRUE(defaults.persistent.empty());
}

TEST(Settings, RegistersExactlyTheTenDefaults)
{
    class Watched : public FakeUserDefaults {
    public:
        void registerDefaults(const std::map<QString, DefaultsValue>& values) override
        {
            registrations.push_back(values);
            FakeUserDefaults::registerDefaults(values);
        }
        std::vector<std::map<QString, DefaultsValue>> registrations;
    } defaults;
    const Settings settings(defaults);
    const std::map<QString, DefaultsValue> expected{
        {QStringLiteral("hotkeyKeyCode"), int64_t{49}}, {QStringLiteral("hotkeyOption"), true},
        {QStringLiteral("hotkeyCommand"), false},       {QStringLiteral("hotkeyShift"), false},
        {QStringLiteral("hotkeyControl"), false},       {QStringLiteral("autoPunctuation"), true},
        {QStringLiteral("removeDisfluencies"), false},  {QStringLiteral("cleanUpSentences"), false},
        {QStringLiteral("saveHistory"), true},          {QStringLiteral("insertion"), QStringLiteral("type")},
    };
    ASSERT_EQ(defaults.registrations.size(), 1u);
    EXPECT_EQ(defaults.registrations.front(), expected);
}

/// One boolean property with everything that belongs to it.
struct Switch {
    const char* key;
    bool (Settings::*get)() const;
    void (Settings::*set)(bool);
    void (Settings::*changed)();

    [[nodiscard]] QString name() const { return QString::fromLatin1(key); }
};

const Switch switches[] = {
    {"hotkeyOption", &Settings::hotkeyOption, &Settings::setHotkeyOption, &Settings::hotkeyOptionChanged},
    {"hotkeyCommand", &Settings::hotkeyCommand, &Settings::setHotkeyCommand, &Settings::hotkeyCommandChanged},
    {"hotkeyShift", &Settings::hotkeyShift, &Settings::setHotkeyShift, &Settings::hotkeyShiftChanged},
    {"hotkeyControl", &Settings::hotkeyControl, &Settings::setHotkeyControl, &Settings::hotkeyControlChanged},
    {"autoPunctuation", &Settings::autoPunctuation, &Settings::setAutoPunctuation,
     &Settings::autoPunctuationChanged},
    {"removeDisfluencies", &Settings::removeDisfluencies, &Settings::setRemoveDisfluencies,
     &Settings::removeDisfluenciesChanged},
    {"cleanUpSentences", &Settings::cleanUpSentences, &Settings::setCleanUpSentences,
     &Settings::cleanUpSentencesChanged},
    {"saveHistory", &Settings::saveHistory, &Settings::setSaveHistory, &Settings::saveHistoryChanged},
};

using SettingsSignal = void (Settings::*)();

const SettingsSignal allSignals[] = {
    &Settings::hotkeyKeyCodeChanged,      &Settings::hotkeyOptionChanged,
    &Settings::hotkeyCommandChanged,      &Settings::hotkeyShiftChanged,
    &Settings::hotkeyControlChanged,      &Settings::autoPunctuationChanged,
    &Settings::removeDisfluenciesChanged, &Settings::cleanUpSentencesChanged,
    &Settings::saveHistoryChanged,        &Settings::insertionChanged,
};

/// Keeps the signals of a settings object in the order in which they came.
class Notices {
public:
    explicit Notices(Settings& settings)
    {
        for (const SettingsSignal signal : allSignals)
            QObject::connect(&settings, signal, &context_, [this, signal] { seen.push_back(signal); });
    }
    std::vector<SettingsSignal> seen;

private:
    QObject context_;
};

class SettingsSwitch : public ::testing::TestWithParam<Switch> {
protected:
    FakeUserDefaults defaults;
};

INSTANTIATE_TEST_SUITE_P(Each, SettingsSwitch, ::testing::ValuesIn(switches),
                         [](const auto& tested) { return std::string(tested.param.key); });

TEST_P(SettingsSwitch, IsReadFromTheStore)
{
    for (const bool stored : {true, false}) {
        defaults.persistent[GetParam().name()] = stored;
        const Settings settings(defaults);
        EXPECT_EQ((settings.*GetParam().get)(), stored);
    }
}

TEST_P(SettingsSwitch, AStoredValueOfTheWrongTypeReadsAsFalse)
{
    defaults.persistent[GetParam().name()] = QStringLiteral("maybe");
    const Settings settings(defaults);
    EXPECT_FALSE((settings.*GetParam().get)());
}

TEST_P(SettingsSwitch, AChangeIsStoredWrittenAndAnnouncedOnce)
{
    Settings settings(defaults);
    const Notices notices(settings);
    const bool changed = !(settings.*GetParam().get)();
    (settings.*GetParam().set)(changed);
    EXPECT_EQ((settings.*GetParam().get)(), changed);
    EXPECT_EQ(defaults.writes, (Writes{{GetParam().name(), changed}}));
    EXPECT_EQ(notices.seen, std::vector{GetParam().changed});
}

TEST_P(SettingsSwitch, AssigningThePresentValueWritesWithoutAnnouncing)
{
    Settings settings(defaults);
    const Notices notices(settings);
    const bool present = (settings.*GetParam().get)();
    (settings.*GetParam().set)(present);
    EXPECT_EQ((settings.*GetParam().get)(), present);
    EXPECT_EQ(defaults.writes, (Writes{{GetParam().name(), present}}));
    EXPECT_TRUE(notices.seen.empty());
}

TEST(Settings, TheKeyCodeIsStoredWrittenAndAnnouncedLikeTheSwitches)
{
    FakeUserDefaults defaults;
    Settings settings(defaults);
    const Notices notices(settings);
    settings.setHotkeyKeyCode(36);
    settings.setHotkeyKeyCode(36);
    EXPECT_EQ(settings.hotkeyKeyCode(), 36);
    EXPECT_EQ(defaults.writes, (Writes{{QStringLiteral("hotkeyKeyCode"), int64_t{36}},
                                       {QStringLiteral("hotkeyKeyCode"), int64_t{36}}}));
    EXPECT_EQ(notices.seen, std::vector<SettingsSignal>{&Settings::hotkeyKeyCodeChanged});
}

TEST(Settings, TheKeyCodeIsTakenAsItIsWhateverItsRange)
{
    FakeUserDefaults defaults;
    for (const int64_t keyCode : {int64_t{0}, int64_t{-1}, int64_t{70000}, int64_t{1} << 40}) {
        defaults.persistent[QStringLiteral("hotkeyKeyCode")] = keyCode;
        EXPECT_EQ(Settings(defaults).hotkeyKeyCode(), keyCode);
    }
}

TEST(Settings, AKeyCodeThatIsNoNumberReadsAsZero)
{
    FakeUserDefaults defaults;
    defaults.persistent[QStringLiteral("hotkeyKeyCode")] = QStringLiteral("space");
    EXPECT_EQ(Settings(defaults).hotkeyKeyCode(), 0);
}

TEST(Settings, TheInsertionMethodIsStoredAsItsRawValue)
{
    FakeUserDefaults defaults;
    Settings settings(defaults);
    const Notices notices(settings);
    settings.setInsertion(InsertionMethod::paste);
    settings.setInsertion(InsertionMethod::paste);
    settings.setInsertion(InsertionMethod::type);
    const QString key = QStringLiteral("insertion");
    EXPECT_EQ(defaults.writes, (Writes{{key, QStringLiteral("paste")},
                                       {key, QStringLiteral("paste")},
                                       {key, QStringLiteral("type")}}));
    const std::vector<SettingsSignal> twice(2, &Settings::insertionChanged);
    EXPECT_EQ(notices.seen, twice);
}

TEST(Settings, OnlyTheExactWordPasteSelectsPasting)
{
    const std::pair<const char*, InsertionMethod> stored[] = {
        {"paste", InsertionMethod::paste},    {"type", InsertionMethod::type},
        {"Paste", InsertionMethod::type},     {"PASTE", InsertionMethod::type},
        {"clipboard", InsertionMethod::type}, {"", InsertionMethod::type},
    };
    for (const auto& [text, expected] : stored) {
        FakeUserDefaults defaults;
        defaults.persistent[QStringLiteral("insertion")] = QString::fromLatin1(text);
        EXPECT_EQ(Settings(defaults).insertion(), expected) << text;
    }
}

TEST(Settings, AnInsertionMethodThatIsNoTextReadsAsTyping)
{
    FakeUserDefaults defaults;
    defaults.persistent[QStringLiteral("insertion")] = int64_t{1};
    EXPECT_EQ(Settings(defaults).insertion(), InsertionMethod::type);
}

TEST(Settings, WithoutRegisteredDefaultsAMissingInsertionMethodIsTyping)
{
    class Forgetful : public FakeUserDefaults {
        void registerDefaults(const std::map<QString, DefaultsValue>&) override {}
    } defaults;
    EXPECT_EQ(Settings(defaults).insertion(), InsertionMethod::type);
}

TEST(Settings, AChangedValueIsThereAgainAfterARestart)
{
    FakeUserDefaults defaults;
    {
        Settings settings(defaults);
        settings.setHotkeyKeyCode(11);
        settings.setHotkeyShift(true);
        settings.setInsertion(InsertionMethod::paste);
    }
    const Settings settings(defaults);
    EXPECT_EQ(settings.hotkeyKeyCode(), 11);
    EXPECT_TRUE(settings.hotkeyShift());
    EXPECT_EQ(settings.insertion(), InsertionMethod::paste);
    EXPECT_TRUE(settings.hotkeyOption());
}

TEST(Settings, EveryModifierMayBeTurnedOff)
{
    FakeUserDefaults defaults;
    {
        Settings settings(defaults);
        settings.setHotkeyOption(false);
    }
    const Settings settings(defaults);
    EXPECT_EQ(settings.hotkeyKeyCode(), 49);
    EXPECT_FALSE(settings.hotkeyOption() || settings.hotkeyCommand() || settings.hotkeyShift() ||
                 settings.hotkeyControl());
}

TEST(Settings, AnObserverFindsTheNewValueInTheSettingsAndInTheStore)
{
    FakeUserDefaults defaults;
    Settings settings(defaults);
    bool wasStored = false;
    QObject::connect(&settings, &Settings::saveHistoryChanged, [&] {
        wasStored = !settings.saveHistory() && !defaults.boolean(QStringLiteral("saveHistory"));
    });
    settings.setSaveHistory(false);
    EXPECT_TRUE(wasStored);
}

TEST(Settings, LaterChangesOfTheStoreByOthersAreNotSeen)
{
    FakeUserDefaults defaults;
    const Settings settings(defaults);
    defaults.persistent[QStringLiteral("autoPunctuation")] = false;
    EXPECT_TRUE(settings.autoPunctuation());
}

} // namespace
} // namespace corvandi
