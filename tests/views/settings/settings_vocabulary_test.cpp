#include "settings_fixture.h"

#include "core/data/store_fixture.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"
#include "views/settings/replacement_row_view.h"
#include "views/settings/vocabulary_pane_view.h"

#include <QMenu>
#include <QScrollBar>

namespace corvandi {
namespace {

using testing::buttonOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::isShown;
using testing::named;
using testing::rowsOf;
using testing::shows;
using testing::waitUntil;

const VocabScope global = vocab_scope::Global{};
const VocabScope mail = vocab_scope::App{QStringLiteral("org.mail")};
const QString addReplacement = QStringLiteral("Add Replacement");

class VocabularyViewTest : public StoreFixture {
protected:
    VocabularyViewTest() { view.resize(600, 500); }
    void addRule(const char* from, const char* to, const VocabScope& scope = global)
    {
        store.addVocab(QString::fromUtf8(from), QString::fromUtf8(to), scope);
    }
    [[nodiscard]] std::vector<QString> stored(const VocabScope& scope = global) const
    {
        std::vector<QString> texts;
        for (const VocabRule& rule : store.rules(scope))
            texts.push_back(rule.from + QLatin1Char('>') + rule.to);
        return texts;
    }
    [[nodiscard]] std::vector<ReplacementRowView*> rows() const { return rowsOf<ReplacementRowView>(view); }
    [[nodiscard]] static QLineEdit& fieldOf(const QWidget& row, const char* placeholder)
    {
        for (auto* field : row.findChildren<QLineEdit*>()) {
            if (field->placeholderText() == QLatin1String(placeholder))
                return *field;
        }
        throw std::runtime_error("there is no such field");
    }
    /// The fields of the row that adds a rule stand beside its button.
    [[nodiscard]] const QWidget& newRule() const
    {
        return *named<QPushButton>(view, addReplacement).parentWidget();
    }
    static void retype(QLineEdit& field, const char* text)
    {
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, QString::fromUtf8(text));
    }
    [[nodiscard]] QComboBox& scopes() const
    {
        return named<QComboBox>(view, QStringLiteral("Apply replacements to"));
    }
    void choose(int index)
    {
        scopes().setCurrentIndex(index);
        Q_EMIT scopes().activated(index);
    }
    [[nodiscard]] QMenu& openMenu()
    {
        QTest::mouseClick(&named<QAbstractButton>(view, QStringLiteral("Add an app")), Qt::LeftButton);
        return *view.findChildren<QMenu*>().back();
    }

    Store& store = start();
    testing::FakeApplicationDirectory applications;
    testing::FakeWorkspace workspace;
    AppCatalog catalog{applications, workspace, Locale(QStringLiteral("en-US"))};
    VocabularyPane pane{store};
    AppInfo browsed{QStringLiteral("org.browsed"), QStringLiteral("Browsed")};
    VocabularyPaneView view{pane, catalog,
                            [this](QWidget&, const VocabularyPaneView::Picked& picked) { picked(browsed); }};
};

TEST_F(VocabularyViewTest, WithoutRulesItSaysWhatTheyAreFor)
{
    ASSERT_TRUE(isShown(view));
    EXPECT_TRUE(shows(view, QStringLiteral("No Replacements")));
    EXPECT_TRUE(shows(view, QStringLiteral("Add a word you say and what it should become.")));
    EXPECT_FALSE(named<QPushButton>(view, addReplacement).isEnabled());
}

TEST_F(VocabularyViewTest, ATypedRuleIsAddedAndItsFieldsAreEmptied)
{
    ASSERT_TRUE(isShown(view));
    auto& from = fieldOf(newRule(), "Heard");
    auto& to = fieldOf(newRule(), "Replace with");
    retype(from, " teh ");
    EXPECT_FALSE(named<QPushButton>(view, addReplacement).isEnabled());
    retype(to, "the ");
    EXPECT_EQ(from.text(), QStringLiteral(" teh ")) << "nothing is trimmed while it is typed";
    auto& add = named<QPushButton>(view, addReplacement);
    EXPECT_TRUE(add.isEnabled());
    QTest::mouseClick(&add, Qt::LeftButton);
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("teh>the")));
    EXPECT_EQ(from.text(), QString());
    EXPECT_EQ(to.text(), QString());
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(fieldOf(*rows()[0], "Heard").text(), QStringLiteral("teh"));
    EXPECT_FALSE(shows(view, QStringLiteral("No Replacements")));
}

TEST_F(VocabularyViewTest, ReturnStoresWhatWasEdited)
{
    addRule("a", "1");
    addRule("b", "2");
    ASSERT_TRUE(isShown(view));
    auto& field = fieldOf(*rows()[1], "Replace with");
    retype(field, "two ");
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1"), QStringLiteral("b>two")));
    EXPECT_EQ(field.text(), QStringLiteral("two"));
    EXPECT_TRUE(field.hasFocus()) << "the row stays";
}

TEST_F(VocabularyViewTest, LeavingTheRowStoresWhatWasEdited)
{
    addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    retype(fieldOf(*rows()[0], "Heard"), "A");
    fieldOf(*rows()[0], "Replace with").setFocus();
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1"))) << "the other field is of the same row";
    fieldOf(newRule(), "Heard").setFocus();
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("A>1")));
}

TEST_F(VocabularyViewTest, AnEmptiedFieldGetsItsTextBackWhenItIsLeft)
{
    addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    auto& field = fieldOf(*rows()[0], "Heard");
    retype(field, " ");
    fieldOf(newRule(), "Heard").setFocus();
    EXPECT_EQ(field.text(), QStringLiteral("a"));
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1")));
}

TEST_F(VocabularyViewTest, ARulesButtonDeletesIt)
{
    addRule("a", "1");
    addRule("b", "2");
    addRule("c", "3");
    ASSERT_TRUE(isShown(view));
    auto* last = rows()[2];
    QTest::mouseClick(&buttonOf(*rows()[1], "Delete replacement"), Qt::LeftButton);
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1"), QStringLiteral("c>3")));
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[1], last) << "the other rows stay as they are";
    addRule("d", "4");
    pane.reloadRules();
    ASSERT_EQ(rows().size(), 3U);
    EXPECT_TRUE(
        waitUntil([&] { return rows()[2]->y() > rows()[1]->y() && rows()[1]->y() > rows()[0]->y(); }));
}

TEST_F(VocabularyViewTest, ARuleThatGoesWhileItIsEditedIsNotStored)
{
    addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    retype(fieldOf(*rows()[0], "Heard"), "edited");
    pane.deleteRule(pane.rules()[0]);
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(VocabularyViewTest, TheScopesAreGlobalAndTheApplications)
{
    store.addApp(QStringLiteral("org.mail"), QStringLiteral("Mail"));
    addRule("a", "global");
    addRule("b", "mail", mail);
    ASSERT_TRUE(isShown(view));
    ASSERT_EQ(scopes().count(), 2);
    EXPECT_EQ(scopes().itemText(0), QStringLiteral("Global"));
    EXPECT_EQ(scopes().itemText(1), QStringLiteral("Mail"));
    EXPECT_FALSE(scopes().itemIcon(1).isNull());
    choose(1);
    EXPECT_EQ(pane.scope(), mail);
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(fieldOf(*rows()[0], "Heard").text(), QStringLiteral("b"));
    EXPECT_EQ(scopes().currentIndex(), 1);
}

TEST_F(VocabularyViewTest, AnApplicationIsRemovedWithItsRules)
{
    store.addApp(QStringLiteral("org.mail"), QStringLiteral("Mail"));
    addRule("a", "global");
    ASSERT_TRUE(isShown(view));
    choose(1);
    EXPECT_TRUE(shows(view, QStringLiteral("Add a replacement that only applies in Mail.")));
    auto& remove = named<QPushButton>(view, QStringLiteral("Remove Mail"));
    EXPECT_TRUE(remove.isVisible());
    QTest::mouseClick(&remove, Qt::LeftButton);
    EXPECT_FALSE(remove.isVisible());
    EXPECT_EQ(scopes().count(), 1);
    EXPECT_EQ(rows().size(), 1U);
}

TEST_F(VocabularyViewTest, TheMenuOffersRunningApplications)
{
    applications.running = {
        {.bundleID = QStringLiteral("org.mail"), .localizedName = QStringLiteral("R&D Mail")},
        {.bundleID = QStringLiteral("a"), .localizedName = QStringLiteral("Apple")}};
    ASSERT_TRUE(isShown(view));
    QMenu& menu = openMenu();
    ASSERT_EQ(menu.actions().size(), 4);
    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("Apple"));
    EXPECT_EQ(menu.actions()[1]->text(), QStringLiteral("R&&D Mail"));
    EXPECT_TRUE(menu.actions()[2]->isSeparator());
    menu.actions()[1]->trigger();
    menu.close();
    EXPECT_EQ(pane.scope(), mail);
    EXPECT_EQ(scopes().currentText(), QStringLiteral("R&D Mail"));
}

TEST_F(VocabularyViewTest, TheMenuLeadsToAllInstalledOnes)
{
    ASSERT_TRUE(isShown(view));
    QMenu& menu = openMenu();
    ASSERT_EQ(menu.actions().back()->text(), QStringLiteral("Browse…"));
    menu.actions().back()->trigger();
    menu.close();
    EXPECT_EQ(scopes().currentText(), QStringLiteral("Browsed"));
}

TEST_F(VocabularyViewTest, TheDeleteKeyDeletesTheRuleWithTheFocus)
{
    addRule("a", "1");
    addRule("b", "2");
    addRule("c", "3");
    ASSERT_TRUE(isShown(view));
    rows()[1]->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1"), QStringLiteral("c>3")));
    EXPECT_TRUE(rows()[1]->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_TRUE(fieldOf(newRule(), "Heard").hasFocus()) << "what is left to do is to add one";
}

TEST_F(VocabularyViewTest, TheDeleteKeyInAFieldDeletesNoRule)
{
    addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    auto& field = fieldOf(*rows()[0], "Heard");
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_Home);
    QTest::keyClick(&field, Qt::Key_Delete);
    EXPECT_EQ(field.text(), QString());
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>1")));
}

TEST_F(VocabularyViewTest, TheMenuOfARowDeletesIt)
{
    addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), rows()[0]->mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(rows()[0], &event);
    auto& menu = *rows()[0]->findChild<QMenu*>();
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("Delete replacement"));
    menu.actions()[0]->trigger();
    menu.close();
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(VocabularyViewTest, GoingToAnotherRowByKeyStoresWhatWasEdited)
{
    addRule("a", "1");
    addRule("b", "2");
    ASSERT_TRUE(isShown(view));
    auto& field = fieldOf(*rows()[0], "Replace with");
    retype(field, "one");
    QTest::keyClick(&field, Qt::Key_Down);
    EXPECT_TRUE(fieldOf(*rows()[1], "Replace with").hasFocus());
    EXPECT_THAT(stored(), ElementsAre(QStringLiteral("a>one"), QStringLiteral("b>2")));
}

TEST_F(VocabularyViewTest, WhatIsEditedIsStoredThoughItIsScrolledOutOfView)
{
    for (int i = 0; i < 1000; ++i)
        addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    retype(fieldOf(*rows()[0], "Heard"), "first");
    view.verticalScrollBar()->setValue(20'000);
    EXPECT_EQ(stored().front(), QStringLiteral("a>1"));
    rows().back()->setFocus();
    EXPECT_EQ(stored().front(), QStringLiteral("first>1"));
}

TEST_F(VocabularyViewTest, AddingLeadsBackToTheFirstField)
{
    ASSERT_TRUE(isShown(view));
    auto& from = fieldOf(newRule(), "Heard");
    retype(from, "teh");
    retype(fieldOf(newRule(), "Replace with"), "the");
    auto& add = named<QPushButton>(view, addReplacement);
    add.setFocus();
    QTest::keyClick(&add, Qt::Key_Space);
    EXPECT_EQ(stored().size(), 1U);
    EXPECT_TRUE(from.hasFocus());
}

TEST_F(VocabularyViewTest, OfManyRulesOnlyAWindowfulIsMade)
{
    for (int i = 0; i < 1000; ++i)
        addRule("a", "1");
    ASSERT_TRUE(isShown(view));
    testing::runFor(std::chrono::milliseconds(50));
    EXPECT_LT(view.findChildren<ReplacementRowView*>().size(), 16);
}

} // namespace
} // namespace corvandi
