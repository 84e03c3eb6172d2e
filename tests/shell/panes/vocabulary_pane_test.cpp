#include "shell/panes/vocabulary_pane.h"

#include "core/data/store_fixture.h"

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const VocabScope global = vocab_scope::Global{};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

VocabScope scopeOf(const char* bundleID)
{
    return vocab_scope::App{text(bundleID)};
}

/// "from>to" of each rule.
std::vector<QString> texts(const std::vector<VocabRule>& rules)
{
    std::vector<QString> result;
    for (const VocabRule& rule : rules)
        result.push_back(rule.from + QLatin1Char('>') + rule.to);
    return result;
}

class VocabularyPaneTest : public StoreFixture {
protected:
    VocabularyPaneTest()
    {
        QObject::connect(&pane, &VocabularyPane::changed, &pane, [this] { ++changes; });
        QObject::connect(&pane, &VocabularyPane::newRuleChanged, &pane, [this] { ++newRuleChanges; });
    }
    void type(const char* from, const char* to)
    {
        pane.setNewFrom(text(from));
        pane.setNewTo(text(to));
    }
    void add(const char* from, const char* to)
    {
        type(from, to);
        pane.add();
    }
    void show()
    {
        pane.reloadApps();
        pane.reloadRules();
    }
    [[nodiscard]] std::vector<QString> stored(const VocabScope& scope) const
    {
        return texts(store.rules(scope));
    }
    [[nodiscard]] std::size_t writesSoFar()
    {
        queue.runAll();
        return writes().size();
    }

    Store& store = start();
    VocabularyPane pane{store};
    int changes = 0;
    int newRuleChanges = 0;
};

TEST_F(VocabularyPaneTest, ItStartsGlobalAndEmptyUntilItIsShown)
{
    store.addVocab(text("a"), text("b"), global);
    store.addApp(text("org.mail"), text("Mail"));
    EXPECT_EQ(pane.scope(), global);
    EXPECT_THAT(pane.rules(), IsEmpty());
    EXPECT_THAT(pane.apps(), IsEmpty());
    show();
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("a>b")));
    EXPECT_THAT(pane.apps(), SizeIs(1));
    EXPECT_EQ(changes, 2);
}

TEST_F(VocabularyPaneTest, ANewRuleIsStoredTrimmedAndItsFieldsAreEmptied)
{
    add("  teh ", "\tthe");
    EXPECT_THAT(stored(global), ElementsAre(text("teh>the")));
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("teh>the")));
    EXPECT_EQ(pane.newFrom(), QString());
    EXPECT_EQ(pane.newTo(), QString());
}

TEST_F(VocabularyPaneTest, OnlySpacesInEitherFieldAddNothing)
{
    const std::pair<const char*, const char*> drafts[] = {{"", ""},     {"a", ""},   {"", "b"},
                                                          {" \t", "b"}, {"a", "  "}, {"\xC2\xA0", "b"}};
    for (const auto& [from, to] : drafts) {
        type(from, to);
        EXPECT_TRUE(pane.isAddDisabled()) << from << '>' << to;
        pane.add();
        EXPECT_EQ(pane.newFrom(), text(from)) << "what was typed stays";
        EXPECT_EQ(pane.newTo(), text(to));
    }
    EXPECT_THAT(stored(global), IsEmpty());
    EXPECT_EQ(writesSoFar(), 0U);
    EXPECT_EQ(changes, 0);
}

TEST_F(VocabularyPaneTest, ALineBreakIsAText)
{
    type("new line", "\n");
    EXPECT_FALSE(pane.isAddDisabled());
    pane.add();
    EXPECT_THAT(stored(global), ElementsAre(text("new line>\n")));
}

TEST_F(VocabularyPaneTest, TypingIsToldOnlyWhenATextChanges)
{
    type("a", "b");
    type("a", "b");
    EXPECT_EQ(newRuleChanges, 2);
    EXPECT_EQ(changes, 0);
}

TEST_F(VocabularyPaneTest, ARuleIsAddedToTheScopeThatIsShown)
{
    pane.addApp({text("org.mail"), text("Mail")});
    add("ok", "OK");
    EXPECT_THAT(stored(scopeOf("org.mail")), ElementsAre(text("ok>OK")));
    EXPECT_THAT(stored(global), IsEmpty());
}

TEST_F(VocabularyPaneTest, WhatIsBeingTypedStaysWhenTheScopeChanges)
{
    type("a", "b");
    pane.addApp({text("org.mail"), text("Mail")});
    EXPECT_EQ(pane.newFrom(), text("a"));
    EXPECT_EQ(pane.newTo(), text("b"));
}

TEST_F(VocabularyPaneTest, ChangingTheScopeShowsItsRules)
{
    add("a", "global");
    pane.addApp({text("org.mail"), text("Mail")});
    add("a", "mail");
    changes = 0;
    pane.setScope(global);
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("a>global")));
    pane.setScope(scopeOf("org.mail"));
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("a>mail")));
    pane.setScope(scopeOf("org.mail"));
    EXPECT_EQ(changes, 2);
}

TEST_F(VocabularyPaneTest, ARuleIsUpdatedInItsPlace)
{
    add("a", "1");
    add("b", "2");
    const QUuid id = pane.rules()[0].id;
    pane.update(pane.rules()[0], text("A"), text("one"));
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("A>one"), text("b>2")));
    EXPECT_EQ(stored(global), texts(pane.rules()));
    EXPECT_EQ(pane.rules()[0].id, id);
}

TEST_F(VocabularyPaneTest, ARuleIsDeleted)
{
    add("a", "1");
    add("b", "2");
    pane.deleteRule(pane.rules()[0]);
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("b>2")));
    EXPECT_EQ(stored(global), texts(pane.rules()));
}

TEST_F(VocabularyPaneTest, SeveralRulesAreDeletedByTheirPositions)
{
    for (const char* from : {"a", "b", "c", "d"})
        add(from, "x");
    pane.deleteRulesAt({0, 2, 17});
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("b>x"), text("d>x")));
    EXPECT_EQ(stored(global), texts(pane.rules()));
}

TEST_F(VocabularyPaneTest, AnotherScopesRulesAreLeftAlone)
{
    add("a", "global");
    const VocabRule globalRule = pane.rules()[0];
    pane.addApp({text("org.mail"), text("Mail")});
    pane.deleteRule(globalRule);
    pane.update(globalRule, text("x"), text("y"));
    EXPECT_THAT(stored(global), ElementsAre(text("a>global")));
}

TEST_F(VocabularyPaneTest, AnAddedApplicationIsStoredAndBecomesTheScope)
{
    pane.addApp({text("org.mail"), text("Mail")});
    EXPECT_EQ(pane.scope(), scopeOf("org.mail"));
    ASSERT_THAT(pane.apps(), SizeIs(1));
    EXPECT_EQ(pane.apps()[0].name, text("Mail"));
    EXPECT_EQ(store.vocabBook().apps, pane.apps());
    EXPECT_EQ(changes, 1);
}

TEST_F(VocabularyPaneTest, AnApplicationThatIsAddedAgainKeepsItsNameAndRulesAndBecomesTheScope)
{
    pane.addApp({text("org.mail"), text("Mail")});
    add("ok", "OK");
    pane.setScope(global);
    pane.addApp({text("org.mail"), text("Post")});
    EXPECT_EQ(pane.scope(), scopeOf("org.mail"));
    ASSERT_THAT(pane.apps(), SizeIs(1));
    EXPECT_EQ(pane.apps()[0].name, text("Mail"));
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("ok>OK")));
}

TEST_F(VocabularyPaneTest, RemovingTheApplicationShowsTheGlobalRules)
{
    add("a", "global");
    pane.addApp({text("org.mail"), text("Mail")});
    pane.addApp({text("org.notes"), text("Notes")});
    add("b", "notes");
    pane.removeCurrentApp();
    EXPECT_EQ(pane.scope(), global);
    EXPECT_THAT(texts(pane.rules()), ElementsAre(text("a>global")));
    ASSERT_THAT(pane.apps(), SizeIs(1));
    EXPECT_EQ(pane.apps()[0].bundleID, text("org.mail"));
    EXPECT_THAT(stored(scopeOf("org.notes")), IsEmpty());
}

TEST_F(VocabularyPaneTest, TheGlobalScopeCantBeRemoved)
{
    add("a", "b");
    const std::size_t before = writesSoFar();
    pane.removeCurrentApp();
    EXPECT_THAT(stored(global), SizeIs(1));
    EXPECT_EQ(writesSoFar(), before);
}

TEST_F(VocabularyPaneTest, AnApplicationIsCalledByItsNameOrElseByItsIdentifier)
{
    pane.addApp({text("org.mail"), text("Mail")});
    EXPECT_EQ(pane.name(text("org.mail")), text("Mail"));
    EXPECT_EQ(pane.name(text("org.Mail")), text("org.Mail"));
}

TEST_F(VocabularyPaneTest, TheDescriptionOfAnEmptyListNamesTheApplication)
{
    EXPECT_EQ(pane.emptyDescription(), text("Add a word you say and what it should become."));
    pane.addApp({text("org.mail"), text("Mail 100%1")});
    EXPECT_EQ(pane.emptyDescription(), text("Add a replacement that only applies in Mail 100%1."));
    pane.setScope(scopeOf("org.gone"));
    EXPECT_EQ(pane.emptyDescription(), text("Add a replacement that only applies in org.gone."));
}

} // namespace
} // namespace corvandi
