#include "core/speech/speech_error.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

/// Runs its test under the locale that it is given, and puts the environment back afterwards.
class SpeechErrorTest : public ::testing::Test {
protected:
    SpeechErrorTest() { qputenv("LC_ALL", "en_US.UTF-8"); }
    ~SpeechErrorTest() override
    {
        if (previous_.isNull())
            qunsetenv("LC_ALL");
        else
            qputenv("LC_ALL", previous_);
    }

    static QString unsupported(const char* identifier)
    {
        return SpeechError::localeUnsupported(QString::fromLatin1(identifier)).description();
    }

private:
    const QByteArray previous_ = qgetenv("LC_ALL");
};

TEST_F(SpeechErrorTest, NamesAnUnsupportedLanguageInTheUsersOwn)
{
    EXPECT_EQ(unsupported("de-DE"), QStringLiteral("Dictation isn't available for German (Germany) yet."));
    qputenv("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(unsupported("de-DE"),
              QStringLiteral("Dictation isn't available for Deutsch (Deutschland) yet."));
}

TEST_F(SpeechErrorTest, NamesALanguageThatHasAScriptAndARegion)
{
    EXPECT_EQ(unsupported("zh-Hans-CN"),
              QStringLiteral("Dictation isn't available for Chinese (Simplified, China) yet."));
}

TEST_F(SpeechErrorTest, CallsALanguageWithoutANameByItsIdentifierWithItsHyphens)
{
    EXPECT_EQ(unsupported("xx-YY"), QStringLiteral("Dictation isn't available for xx-YY yet."));
}

TEST_F(SpeechErrorTest, CarriesTheIdentifierOfTheUnsupportedLanguage)
{
    const SpeechError error = SpeechError::localeUnsupported(QStringLiteral("xx-YY"));
    EXPECT_EQ(error.kind(), SpeechError::Kind::localeUnsupported);
    EXPECT_EQ(error.localeIdentifier(), QStringLiteral("xx-YY"));
}

TEST_F(SpeechErrorTest, SaysThatThereIsNoCommonFormat)
{
    const SpeechError error = SpeechError::noAnalyzerFormat();
    EXPECT_EQ(error.kind(), SpeechError::Kind::noAnalyzerFormat);
    EXPECT_EQ(error.description(), QStringLiteral("No compatible audio format for transcription."));
}

TEST_F(SpeechErrorTest, SaysThatTheMicrophonesSoundCannotBeConverted)
{
    const SpeechError error = SpeechError::converterUnavailable();
    EXPECT_EQ(error.kind(), SpeechError::Kind::converterUnavailable);
    EXPECT_EQ(error.description(), QStringLiteral("Can't convert microphone audio for transcription."));
}

TEST_F(SpeechErrorTest, IsAnErrorOfTheProgramsOwnMaking)
{
    const SpeechError error = SpeechError::noAnalyzerFormat();
    EXPECT_EQ(error.domain(), QStringLiteral("Corvandi"));
    EXPECT_EQ(error.code(), 1);
}

} // namespace
} // namespace corvandi::testing
