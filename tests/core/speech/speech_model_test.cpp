#include "core/speech/speech_error.h"
#include "core/speech/speech_service_fixture.h"

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<Locale> locales(std::initializer_list<const char*> identifiers)
{
    std::vector<Locale> result;
    for (const char* identifier : identifiers)
        result.emplace_back(QString::fromLatin1(identifier));
    return result;
}

QString resolved(const char* wanted, std::initializer_list<const char*> supported)
{
    const auto locale = SpeechService::resolveLocale(Locale(QString::fromLatin1(wanted)), locales(supported));
    return locale ? locale->bcp47() : QStringLiteral("none");
}

TEST(ResolveLocale, AnExactMatchBeatsAnEarlierLanguageMatch)
{
    EXPECT_EQ(resolved("en-US", {"en-GB", "en-US"}), QStringLiteral("en-US"));
}

TEST(ResolveLocale, ElseTheFirstLocaleOfTheSameLanguageIsTheAnswer)
{
    EXPECT_EQ(resolved("en-AU", {"de-DE", "en-GB", "en-US"}), QStringLiteral("en-GB"));
    EXPECT_EQ(resolved("en", {"en-GB", "en-US"}), QStringLiteral("en-GB"));
}

TEST(ResolveLocale, IdentifiersMatchExactlyInTheirLetterCaseToo)
{
    EXPECT_EQ(resolved("en-us", {"en-GB", "en-US"}), QStringLiteral("en-GB"));
}

TEST(ResolveLocale, AnUnknownLanguageHasNoAnswer)
{
    EXPECT_EQ(resolved("xx", {"en-GB", "en-US"}), QStringLiteral("none"));
}

TEST(ResolveLocale, WithoutSupportedLocalesThereIsNoAnswer)
{
    EXPECT_EQ(resolved("en-US", {}), QStringLiteral("none"));
}

TEST(ResolveLocale, AWantedLocaleWithoutALanguageMatchesExactlyOrNotAtAll)
{
    EXPECT_EQ(resolved("und-US", {"en-US", "und-GB"}), QStringLiteral("none"));
    EXPECT_EQ(resolved("und-US", {"en-US", "und-US"}), QStringLiteral("und-US"));
}

using SpeechModelTest = SpeechServiceTest;

TEST_F(SpeechModelTest, AnInstalledModelIsNotDownloaded)
{
    EXPECT_TRUE(ensureModel().hasSucceeded());
    EXPECT_EQ(framework.inventory.callCount(), 1);
    EXPECT_EQ(framework.downloading.callCount(), 0);
}

TEST_F(SpeechModelTest, AMissingModelIsDownloadedAndWaitedFor)
{
    framework.modelIsInstalled = false;
    framework.downloading.hold();
    const auto outcome = ensureModel();
    EXPECT_FALSE(outcome.hasEnded());

    framework.downloading.release();
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_TRUE(framework.modelIsInstalled);
}

TEST_F(SpeechModelTest, TheModelIsThatOfTheResolvedLocale)
{
    makeService(QStringLiteral("en-AU"));
    framework.locales = locales({"de-DE", "en-GB", "en-US"});
    framework.modelIsInstalled = false;
    EXPECT_TRUE(ensureModel().hasSucceeded());
    // Asked for, then installed.
    const Locale british(QStringLiteral("en-GB"));
    EXPECT_THAT(framework.usedLocales(), ElementsAre(british, british));
}

TEST_F(SpeechModelTest, PreparingTheModelStartsNoDictation)
{
    EXPECT_TRUE(ensureModel().hasSucceeded());
    EXPECT_THAT(framework.dictations(), IsEmpty());
}

TEST_F(SpeechModelTest, AnUnsupportedLanguageIsReportedBeforeAnythingIsMade)
{
    makeService(QStringLiteral("xx"));
    const auto outcome = ensureModel();
    EXPECT_THAT(framework.usedLocales(), IsEmpty());
    try {
        outcome.rethrow();
        ADD_FAILURE() << "the language is not supported";
    } catch (const SpeechError& error) {
        EXPECT_EQ(error.kind(), SpeechError::Kind::localeUnsupported);
        EXPECT_EQ(error.localeIdentifier(), QStringLiteral("xx"));
    }
}

TEST_F(SpeechModelTest, ErrorsOfTheFrameworkArePassedOn)
{
    framework.modelIsInstalled = false;
    framework.downloading.fail(QStringLiteral("no network"));
    EXPECT_EQ(ensureModel().failure(), QStringLiteral("no network"));
    framework.inventory.fail(QStringLiteral("the model is damaged"));
    EXPECT_EQ(ensureModel().failure(), QStringLiteral("the model is damaged"));
    framework.listing.fail(QStringLiteral("no engine"));
    EXPECT_EQ(ensureModel().failure(), QStringLiteral("no engine"));
}

TEST_F(SpeechModelTest, ADownloadOutlivesTheService)
{
    framework.modelIsInstalled = false;
    framework.downloading.hold();
    const auto outcome = ensureModel();
    service.reset();
    framework.downloading.release();
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_TRUE(framework.modelIsInstalled);
}

TEST_F(SpeechModelTest, AnInstallationQueryThatEndsAfterTheServiceStillLeadsToTheDownload)
{
    framework.modelIsInstalled = false;
    framework.inventory.hold();
    const auto outcome = ensureModel();
    service.reset();
    framework.inventory.release();
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_TRUE(framework.modelIsInstalled);
}

} // namespace
} // namespace corvandi::testing
