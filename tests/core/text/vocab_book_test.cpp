#include "core/text/vocab_book.h"

#include "support/vocab_rules.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::rule;

const QString editor = QStringLiteral("org.example.editor");
const QString mail = QStringLiteral("org.example.mail");
const VocabScope global = vocab_scope::Global{};
const VocabScope inEditor = vocab_scope::App{editor};
const VocabScope inMail = vocab_scope::App{mail};

const VocabRule first = rule(u"a", u"1");
const VocabRule second = rule(u"b", u"2");
const VocabRule third = rule(u"c", u"3");

using Rules = std::vector<VocabRule>;

/// Three global rules, and the same three in the editor; an entry of the mail program without rules.
VocabBook book()
{
    return {{first, second, third},
            {{editor, QStringLiteral("Editor"), {first, second, third}}, {mail, QStringLiteral("Mail"), {}}}};
}

TEST(VocabBook, ARuleIsAppendedToItsScopeAlone)
{
    const VocabRule added = rule(u"d", u"4");
    VocabBook changed = book();
    changed.addRule(added, global);
    EXPECT_EQ(changed.global, (Rules{first, second, third, added}));
    EXPECT_EQ(changed.apps, book().apps);

    changed = book();
    changed.addRule(added, inEditor);
    EXPECT_EQ(changed.rules(inEditor), (Rules{first, second, third, added}));
    EXPECT_EQ(changed.global, book().global);
    EXPECT_TRUE(changed.rules(inMail).empty());
}

TEST(VocabBook, ARuleForAnApplicationWithoutAnEntryIsNotAdded)
{
    VocabBook changed = book();
    changed.addRule(rule(u"d", u"4"), vocab_scope::App{QStringLiteral("org.example.Editor")});
    EXPECT_EQ(changed, book());
}

TEST(VocabBook, EqualTriggersAndEmptyTextsAreKept)
{
    VocabBook changed;
    const Rules odd = {rule(u"a", u"1"), rule(u"a", u"1"), rule(u"", u""), rule(u" ", u"")};
    for (const VocabRule& each : odd)
        changed.addRule(each, global);
    EXPECT_EQ(changed.global, odd);
}

TEST(VocabBook, ARuleIsUpdatedInPlaceAndKeepsItsIdentifier)
{
    VocabBook changed = book();
    changed.updateRule(second.id, QStringLiteral("x"), QStringLiteral("9"), global);
    EXPECT_EQ(changed.global, (Rules{first, {second.id, QStringLiteral("x"), QStringLiteral("9")}, third}));
    EXPECT_EQ(changed.apps, book().apps);

    changed = book();
    changed.updateRule(third.id, QString(), QString(), inEditor);
    EXPECT_EQ(changed.rules(inEditor), (Rules{first, second, {third.id, QString(), QString()}}));
    EXPECT_EQ(changed.global, book().global);
}

TEST(VocabBook, OnlyTheFirstRuleWithTheIdentifierIsUpdated)
{
    VocabBook changed;
    changed.global = {first, second, first};
    changed.updateRule(first.id, QStringLiteral("x"), QStringLiteral("9"), global);
    EXPECT_EQ(changed.global, (Rules{{first.id, QStringLiteral("x"), QStringLiteral("9")}, second, first}));
}

TEST(VocabBook, AnUnknownIdentifierOrApplicationUpdatesNothing)
{
    VocabBook changed = book();
    changed.updateRule(QUuid::createUuid(), QStringLiteral("x"), QStringLiteral("9"), global);
    changed.updateRule(first.id, QStringLiteral("x"), QStringLiteral("9"), inMail);
    changed.updateRule(first.id, QStringLiteral("x"), QStringLiteral("9"), vocab_scope::App{QString()});
    EXPECT_EQ(changed, book());
}

TEST(VocabBook, ARuleIsUpdatedWithItsOwnTexts)
{
    VocabBook changed = book();
    const VocabRule& inPlace = changed.global[0];
    changed.updateRule(inPlace.id, inPlace.to, inPlace.from, global);
    EXPECT_EQ(changed.global[0], (VocabRule{first.id, QStringLiteral("1"), QStringLiteral("a")}));
}

TEST(VocabBook, EveryRuleWithTheIdentifierIsDeletedFromTheScope)
{
    VocabBook changed = book();
    changed.global = {first, second, first, third, first};
    changed.deleteRule(changed.global[0].id, global);
    EXPECT_EQ(changed.global, (Rules{second, third}));
    EXPECT_EQ(changed.apps, book().apps);

    changed = book();
    changed.deleteRule(second.id, inEditor);
    EXPECT_EQ(changed.rules(inEditor), (Rules{first, third}));
    EXPECT_EQ(changed.global, book().global);
}

TEST(VocabBook, AnUnknownIdentifierOrApplicationDeletesNothing)
{
    VocabBook changed = book();
    changed.deleteRule(QUuid::createUuid(), global);
    changed.deleteRule(first.id, inMail);
    changed.deleteRule(first.id, vocab_scope::App{QStringLiteral("org.example")});
    EXPECT_EQ(changed, book());
}

TEST(VocabBook, AnApplicationIsAppendedWithoutRules)
{
    VocabBook changed = book();
    changed.addApp(QStringLiteral("org.example.chat"), QStringLiteral("Chat"));
    ASSERT_EQ(changed.apps.size(), 3U);
    EXPECT_EQ(changed.apps[2], (AppVocab{QStringLiteral("org.example.chat"), QStringLiteral("Chat"), {}}));
}

TEST(VocabBook, AnApplicationWithAnEntryIsNotAddedAgainAndKeepsItsName)
{
    VocabBook changed = book();
    changed.addApp(editor, QStringLiteral("Another name"));
    EXPECT_EQ(changed, book());
}

TEST(VocabBook, AnotherLetterCaseMakesAnotherApplication)
{
    VocabBook changed = book();
    changed.addApp(editor.toUpper(), QStringLiteral("Editor"));
    EXPECT_EQ(changed.apps.size(), 3U);
}

TEST(VocabBook, OfTwoEntriesOfOneApplicationTheFirstIsUsed)
{
    VocabBook changed = book();
    changed.apps.push_back({editor, QStringLiteral("Second"), {}});
    changed.addRule(first, inEditor);
    EXPECT_EQ(changed.apps[0].rules.size(), 4U);
    EXPECT_TRUE(changed.apps[2].rules.empty());
}

TEST(VocabBook, RemovingAnApplicationRemovesAllItsEntries)
{
    VocabBook changed = book();
    changed.apps.push_back({editor, QStringLiteral("Second"), {}});
    changed.removeApp(changed.apps[0].bundleID);
    ASSERT_EQ(changed.apps.size(), 1U);
    EXPECT_EQ(changed.apps[0], book().apps[1]);
    EXPECT_EQ(changed.global, book().global);
}

TEST(VocabBook, RemovingAnUnknownApplicationChangesNothing)
{
    VocabBook changed = book();
    changed.removeApp(editor.toUpper());
    EXPECT_EQ(changed, book());
}

TEST(VocabBook, TheListOfAScopeIsItsOwn)
{
    EXPECT_EQ(book().rules(global), book().global);
    EXPECT_EQ(book().rules(inEditor), book().apps[0].rules);
    EXPECT_TRUE(book().rules(vocab_scope::App{QStringLiteral("org.example.chat")}).empty());
}

TEST(VocabBook, ACopyIsIndependent)
{
    const VocabBook original = book();
    VocabBook copy = original;
    copy.deleteRule(first.id, inEditor);
    EXPECT_EQ(original, book());
    EXPECT_NE(copy, original);
}

} // namespace
} // namespace corvandi
