#include "core/speech/speech_locale.h"

#include "support/fake_user_defaults.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

class SpeechLocaleTest : public ::testing::Test {
protected:
    SpeechLocaleTest() { qputenv("LC_ALL", "de_DE.UTF-8"); }
    [[nodiscard]] std::string localeWith(const char* preference)
    {
        defaults.set(QStringLiteral("speechLocale"), QString::fromLatin1(preference));
        return speechLocale(defaults, log).bcp47().toStdString();
    }

    FakeUserDefaults defaults;
    RecordingLog log;
};

TEST_F(SpeechLocaleTest, WithoutThePreferenceItIsTheCurrentOne)
{
    EXPECT_EQ(speechLocale(defaults, log).bcp47(), QStringLiteral("de-DE"));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(SpeechLocaleTest, AGermanDesktopsOwnerMayDictateEnglish)
{
    EXPECT_EQ(localeWith("en-US"), "en-US");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(SpeechLocaleTest, AValueThatIsNoTagIsLoggedAndTheCurrentOneTaken)
{
    EXPECT_EQ(localeWith("english, please"), "de-DE");
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(SpeechLocaleTest, AnEmptyValueIsNoTag)
{
    EXPECT_EQ(localeWith(""), "de-DE");
    EXPECT_EQ(log.lines().size(), 1U);
}

} // namespace
} // namespace corvandi::testing
