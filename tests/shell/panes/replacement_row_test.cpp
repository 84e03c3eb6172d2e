#include "shell/panes/vocabulary_pane.h"

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Field = ReplacementRow::Field;

class ReplacementRowTest : public ::testing::Test {
protected:
    void type(const char* from, const char* to)
    {
        row.setFrom(QString::fromUtf8(from));
        row.setTo(QString::fromUtf8(to));
    }
    [[nodiscard]] QString shown() const { return row.from() + QLatin1Char('>') + row.to(); }

    std::vector<QString> commits;
    int deletions = 0;
    ReplacementRow row{
        {QUuid::createUuid(), QStringLiteral("teh"), QStringLiteral("the")},
        [this](const QString& from, const QString& to) { commits.push_back(from + QLatin1Char('>') + to); },
        [this] { ++deletions; }};
};

TEST_F(ReplacementRowTest, ItShowsTheRulesTexts)
{
    EXPECT_EQ(shown(), QStringLiteral("teh>the"));
}

TEST_F(ReplacementRowTest, NewTextsAreTrimmedAndHandedOn)
{
    type(" hte\t", "  the one ");
    row.commit();
    EXPECT_THAT(commits, ElementsAre(QStringLiteral("hte>the one")));
    EXPECT_EQ(shown(), QStringLiteral("hte>the one"));
}

TEST_F(ReplacementRowTest, OneNewTextIsEnough)
{
    type("teh", "The");
    row.commit();
    type("Teh", "the");
    row.commit();
    EXPECT_THAT(commits, ElementsAre(QStringLiteral("teh>The"), QStringLiteral("Teh>the")));
}

TEST_F(ReplacementRowTest, AnEmptiedFieldBringsBothStoredTextsBack)
{
    type("", "something else");
    row.commit();
    EXPECT_EQ(shown(), QStringLiteral("teh>the"));
    type("something else", " \t ");
    row.commit();
    EXPECT_EQ(shown(), QStringLiteral("teh>the"));
    EXPECT_THAT(commits, IsEmpty());
}

TEST_F(ReplacementRowTest, OuterSpacesAloneAreNoChange)
{
    type("  teh", "the ");
    row.commit();
    EXPECT_THAT(commits, IsEmpty());
    EXPECT_EQ(shown(), QStringLiteral("teh>the"));
}

TEST_F(ReplacementRowTest, LeavingTheRowCommits)
{
    row.setFocused(Field::from);
    type("hte", "the");
    row.setFocused(std::nullopt);
    EXPECT_THAT(commits, ElementsAre(QStringLiteral("hte>the")));
}

TEST_F(ReplacementRowTest, GoingFromOneFieldToTheOtherDoesNotCommit)
{
    row.setFocused(Field::from);
    type("", "the");
    row.setFocused(Field::to);
    EXPECT_EQ(shown(), QStringLiteral(">the"));
    EXPECT_THAT(commits, IsEmpty());
}

TEST_F(ReplacementRowTest, WithoutHavingHadTheFocusItCantBeLeft)
{
    type("hte", "the");
    row.setFocused(std::nullopt);
    EXPECT_THAT(commits, IsEmpty());
}

TEST_F(ReplacementRowTest, WhatHasBeenStoredIsNotStoredAgain)
{
    row.setFocused(Field::from);
    type("hte", "the");
    row.commit();
    row.setRule({row.rule().id, QStringLiteral("hte"), QStringLiteral("the")});
    row.setFocused(std::nullopt);
    EXPECT_THAT(commits, ElementsAre(QStringLiteral("hte>the")));
}

TEST_F(ReplacementRowTest, AStoredRuleDoesNotReplaceWhatIsBeingTyped)
{
    type("half", "typed");
    row.setRule(row.rule());
    EXPECT_EQ(shown(), QStringLiteral("half>typed"));
}

TEST_F(ReplacementRowTest, ItsButtonDeletesWithoutCommitting)
{
    type("hte", "the");
    row.deleteRule();
    EXPECT_EQ(deletions, 1);
    EXPECT_THAT(commits, IsEmpty());
}

TEST(ReplacementRow, MayGoWhileItCommitsOrDeletes)
{
    std::unique_ptr<ReplacementRow> row;
    QString seen;
    const auto make = [&] {
        row = std::make_unique<ReplacementRow>(
            VocabRule{QUuid::createUuid(), QStringLiteral("a"), QStringLiteral("b")},
            [&](const QString& from, const QString& to) {
                row.reset();
                seen = from + to;
            },
            [&] {
                row.reset();
                seen = QStringLiteral("deleted");
            });
    };
    make();
    row->setFrom(QStringLiteral("c"));
    row->commit();
    EXPECT_EQ(seen, QStringLiteral("cb"));
    make();
    row->deleteRule();
    EXPECT_EQ(seen, QStringLiteral("deleted"));
}

} // namespace
} // namespace corvandi
