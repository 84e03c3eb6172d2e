#include "core/data/app_catalog.h"

#include "support/fake_application_directory.h"
#include "support/fake_session.h"

#include <gmock/gmock.h>

#include <unordered_set>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

AppInfo app(const char* bundleID, const char* name)
{
    return {text(bundleID), text(name)};
}

class AppCatalogTest : public ::testing::Test {
protected:
    void run(const char* bundleID, const char* name)
    {
        directory.running.push_back({.bundleID = text(bundleID), .localizedName = text(name)});
    }
    void install(const char* bundleID, const char* name)
    {
        directory.installed.push_back({.bundleID = text(bundleID), .displayName = text(name), .icon = {}});
    }
    [[nodiscard]] std::vector<QString> runningNames(const char* locale)
    {
        std::vector<QString> names;
        for (const AppInfo& info : AppCatalog(directory, workspace, Locale(text(locale))).runningApps())
            names.push_back(info.name);
        return names;
    }

    testing::FakeApplicationDirectory directory;
    testing::FakeWorkspace workspace;
    AppCatalog catalog{directory, workspace, Locale(QStringLiteral("en-US"))};
};

TEST_F(AppCatalogTest, WithoutRunningApplicationsTheListIsEmpty)
{
    EXPECT_THAT(catalog.runningApps(), IsEmpty());
}

TEST_F(AppCatalogTest, TwoInstancesOfOneApplicationAreOneEntryWithTheFirstOnesName)
{
    run("org.mail", "Mail");
    run("org.notes", "Notes");
    run("org.mail", "Another name");
    EXPECT_THAT(catalog.runningApps(), ElementsAre(app("org.mail", "Mail"), app("org.notes", "Notes")));
}

TEST_F(AppCatalogTest, IdentifiersThatDifferInLetterCaseAreTwoApplications)
{
    run("org.Mail", "Mail");
    run("org.mail", "Mail");
    EXPECT_EQ(catalog.runningApps().size(), 2U);
}

TEST_F(AppCatalogTest, AnApplicationWithoutANameIsListedUnderItsIdentifier)
{
    directory.running.push_back({.bundleID = text("xterm"), .localizedName = {}});
    EXPECT_THAT(catalog.runningApps(), ElementsAre(app("xterm", "xterm")));
}

TEST_F(AppCatalogTest, AnApplicationWithoutAnIdentifierIsLeftOut)
{
    directory.running.push_back({.bundleID = {}, .localizedName = text("Nobody")});
    EXPECT_THAT(catalog.runningApps(), IsEmpty());
}

TEST_F(AppCatalogTest, AnAgentIsLeftOut)
{
    directory.running.push_back(
        {.bundleID = text("org.panel"), .localizedName = text("Panel"), .isRegular = false});
    EXPECT_THAT(catalog.runningApps(), IsEmpty());
}

TEST_F(AppCatalogTest, AnAgentDoesNotHideTheOrdinaryInstanceOfTheSameApplication)
{
    directory.running.push_back(
        {.bundleID = text("org.files"), .localizedName = text("Desktop"), .isRegular = false});
    run("org.files", "Files");
    EXPECT_THAT(catalog.runningApps(), ElementsAre(app("org.files", "Files")));
}

TEST_F(AppCatalogTest, TheProgramItselfIsNotListed)
{
    run("io.corvandi.Corvandi", "Corvandi");
    run("org.mail", "Mail");
    workspace.own = text("io.corvandi.Corvandi");
    EXPECT_THAT(catalog.runningApps(), ElementsAre(app("org.mail", "Mail")));
}

TEST_F(AppCatalogTest, AProgramWithoutAnIdentifierListsAllOthers)
{
    workspace.own.reset();
    run("org.mail", "Mail");
    EXPECT_THAT(catalog.runningApps(), ElementsAre(app("org.mail", "Mail")));
}

TEST_F(AppCatalogTest, NamesAreSortedWithoutRegardToLetterCaseAndEqualOnesKeepTheirOrder)
{
    run("b", "beta");
    run("A", "Alpha");
    run("a", "alpha");
    EXPECT_THAT(runningNames("en-US"), ElementsAre(text("Alpha"), text("alpha"), text("beta")));

    directory.running.clear();
    run("b", "beta");
    run("a", "alpha");
    run("A", "Alpha");
    EXPECT_THAT(runningNames("en-US"), ElementsAre(text("alpha"), text("Alpha"), text("beta")));
}

TEST_F(AppCatalogTest, NamesAreSortedAsTheUsersLanguageHasIt)
{
    run("o", "Öppna");
    run("z", "Zoom");
    run("p", "Paint");
    EXPECT_THAT(runningNames("de-DE"), ElementsAre(text("Öppna"), text("Paint"), text("Zoom")));
    EXPECT_THAT(runningNames("sv-SE"), ElementsAre(text("Paint"), text("Zoom"), text("Öppna")));
}

TEST_F(AppCatalogTest, AccentsTellNamesApart)
{
    run("2", "Café");
    run("1", "cafe");
    EXPECT_THAT(runningNames("en-US"), ElementsAre(text("cafe"), text("Café")));
}

TEST_F(AppCatalogTest, AnUnknownLanguageSortsLikeAnyOther)
{
    run("b", "beta");
    run("a", "Alpha");
    EXPECT_THAT(runningNames("not a language"), ElementsAre(text("Alpha"), text("beta")));
}

TEST_F(AppCatalogTest, APickBecomesTheApplicationUnderItsDisplayName)
{
    EXPECT_EQ(catalog.usablePick({text("org.mail"), text("Mail"), text("mail-icon")}),
              app("org.mail", "Mail"));
}

TEST_F(AppCatalogTest, TheSuffixOfAnApplicationIsRemovedWhereverItStandsInThePicksName)
{
    EXPECT_EQ(catalog.usablePick({text("a"), text("My.apple.app"), {}}), app("a", "Myle"));
    EXPECT_EQ(catalog.usablePick({text("a"), text("Mail.APP"), {}}), app("a", "Mail.APP"));
}

TEST_F(AppCatalogTest, APickWithoutAnIdentifierIsNotUsable)
{
    EXPECT_EQ(catalog.usablePick({std::nullopt, text("Mail"), {}}), std::nullopt);
}

TEST_F(AppCatalogTest, TheProgramItselfCantBePicked)
{
    workspace.own = text("io.corvandi.Corvandi");
    EXPECT_EQ(catalog.usablePick({text("io.corvandi.Corvandi"), text("Corvandi"), {}}), std::nullopt);
}

TEST_F(AppCatalogTest, WhatIsOfferedForPickingIsUsableAndSorted)
{
    install("z", "zebra.app");
    install("io.corvandi.Corvandi", "Corvandi");
    install("a", "Apple");
    install("a", "Apple again");
    directory.installed.push_back({.bundleID = {}, .displayName = text("Nobody"), .icon = {}});
    workspace.own = text("io.corvandi.Corvandi");
    EXPECT_THAT(catalog.installedApps(), ElementsAre(app("a", "Apple"), app("z", "zebra")));
}

TEST_F(AppCatalogTest, AnInstalledApplicationHasItsOwnIcon)
{
    directory.icons[text("org.mail")] = text("mail-icon");
    EXPECT_EQ(catalog.icon(text("org.mail")), text("mail-icon"));
}

TEST_F(AppCatalogTest, AnApplicationThatIsNotInstalledHasTheIconOfAnyApplication)
{
    EXPECT_EQ(catalog.icon(text("org.gone")), text("application-x-executable"));
}

TEST_F(AppCatalogTest, ApplicationsCanBeKeptInASet)
{
    const std::unordered_set<AppInfo> apps{app("a", "A"), app("a", "A"), app("b", "B")};
    EXPECT_EQ(apps.size(), 2U);
}

} // namespace
} // namespace corvandi
