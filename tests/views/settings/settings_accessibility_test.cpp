#include "settings_fixture.h"

#include "core/data/store_fixture.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"
#include "views/settings/app_chooser.h"
#include "views/settings/history_pane_view.h"
#include "views/settings/vocabulary_pane_view.h"

#include <QAccessible>

namespace corvandi::testing {
namespace {

/// Every element of the accessible tree that can be seen.
void walk(QAccessibleInterface* element, const std::function<void(QAccessibleInterface&)>& visit)
{
    if (!element || element->state().invisible)
        return;
    visit(*element);
    for (int index = 0; index < element->childCount(); ++index)
        walk(element->child(index), visit);
}

bool isInteractive(const QAccessibleInterface& element)
{
    switch (element.role()) {
    case QAccessible::CheckBox:
    case QAccessible::PushButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::ListItem:
    case QAccessible::List:
        return true;
    case QAccessible::StaticText:
        return false;
    default:
        return element.state().focusable;
    }
}

/// A combo box is called what is chosen; what it is for is told by its label.
QString nameOf(const QAccessibleInterface& element)
{
    if (element.role() == QAccessible::ComboBox) {
        for (const auto& [related, relation] : element.relations(QAccessible::Label))
            return related->text(QAccessible::Name);
    }
    return element.text(QAccessible::Name);
}

/// The interactive elements of `view` by their names; checks each of them.
std::map<QString, QAccessible::Role> elementsOf(QWidget& view)
{
    EXPECT_TRUE(isShown(view));
    std::map<QString, QAccessible::Role> found;
    walk(QAccessible::queryAccessibleInterface(&view), [&found](QAccessibleInterface& element) {
        if (!isInteractive(element))
            return;
        const QString name = nameOf(element);
        const auto* object = element.object();
        EXPECT_FALSE(name.isEmpty()) << (object ? object->metaObject()->className() : "an item");
        EXPECT_NE(element.role(), QAccessible::NoRole) << name.toStdString();
        EXPECT_NE(element.role(), QAccessible::Client) << name.toStdString();
        EXPECT_TRUE(found.emplace(name, element.role()).second) << name.toStdString() << " is there twice";
    });
    return found;
}

using SettingsAccessibilityTest = SettingsFixture;

/// The pages that work on the store.
class ListsAccessibilityTest : public StoreFixture {
protected:
    ListsAccessibilityTest()
    {
        history.resize(600, 500);
        vocabulary.resize(600, 500);
    }

    Store& store = start();
    HistoryPane historyPane{store, [](const QString&) {}};
    HistoryPaneView history{historyPane};
    FakeApplicationDirectory applications;
    FakeWorkspace workspace;
    AppCatalog catalog{applications, workspace, Locale(QStringLiteral("en-US"))};
    VocabularyPane vocabularyPane{store};
    VocabularyPaneView vocabulary{vocabularyPane, catalog,
                                  [](QWidget&, const VocabularyPaneView::Picked&) {}};
};

TEST_F(SettingsAccessibilityTest, EveryElementOfTheGeneralPaneHasNameAndRole)
{
    parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
    parts.general.refresh();
    parts.queue.drain();
    GeneralPaneView view(parts.general, parts.recorder);
    view.resize(460, 640);
    const auto elements = elementsOf(view);
    EXPECT_EQ(elements.at(QStringLiteral("Dictation hotkey")), QAccessible::PushButton);
    EXPECT_EQ(elements.at(QStringLiteral("Save history")), QAccessible::CheckBox);
    EXPECT_EQ(elements.at(QStringLiteral("Insert text by")), QAccessible::ComboBox);
    EXPECT_EQ(elements.count(QStringLiteral("Open Apple Intelligence Settings…")), 1U);
}

TEST_F(SettingsAccessibilityTest, EveryElementOfThePermissionsPaneHasNameAndRole)
{
    parts.accessibility.trusted = false;
    parts.microphone.present = AuthorizationStatus::denied;
    PermissionsPaneView view(parts.permissionsPane);
    EXPECT_EQ(elementsOf(view).count(QStringLiteral("Grant Microphone")), 1U);
}

TEST_F(SettingsAccessibilityTest, EveryElementOfTheWelcomeHasNameAndRole)
{
    parts.accessibility.trusted = false;
    WelcomeView view(parts.makeWelcome());
    EXPECT_EQ(elementsOf(view).at(QStringLiteral("Continue")), QAccessible::PushButton);
}

TEST_F(SettingsAccessibilityTest, TheSidebarIsAListOfPages)
{
    parts.navigator.setPane(SettingsPane::permissions);
    const auto view = makeSettings();
    const auto elements = elementsOf(*view);
    EXPECT_EQ(elements.at(QStringLiteral("Settings pages")), QAccessible::List);
    EXPECT_EQ(elements.at(QStringLiteral("History")), QAccessible::ListItem);
}

TEST_F(SettingsAccessibilityTest, ASwitchTellsWhetherItIsOnAndCanBeTurned)
{
    GeneralPaneView view(parts.general, parts.recorder);
    ASSERT_TRUE(isShown(view));
    auto& toggle = named<kit::Switch>(view, QStringLiteral("Save history"));
    auto* element = QAccessible::queryAccessibleInterface(&toggle);
    EXPECT_TRUE(element->state().checkable);
    EXPECT_TRUE(element->state().checked);
    element->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(element->state().checked);
    EXPECT_FALSE(parts.settings.saveHistory());
}

TEST_F(ListsAccessibilityTest, EveryElementOfTheHistoryHasNameAndRole)
{
    store.addHistory(QStringLiteral("one"), Date{});
    store.addHistory(QStringLiteral("two ").repeated(100), Date{});
    const auto elements = elementsOf(history);
    EXPECT_EQ(elements.at(QStringLiteral("Search History")), QAccessible::EditableText);
    EXPECT_EQ(elements.at(QStringLiteral("History")), QAccessible::List);
    EXPECT_EQ(elements.at(QStringLiteral("Copy, one")), QAccessible::PushButton);
    EXPECT_EQ(elements.at(QStringLiteral("Delete, one")), QAccessible::PushButton);
    EXPECT_EQ(elements.count(QStringLiteral("Clear History")), 1U);
}

TEST_F(ListsAccessibilityTest, ARowOfTheHistoryTellsItsTextAndItsPlace)
{
    for (const char* text : {"one", "two", "three"})
        store.addHistory(QString::fromUtf8(text), Date{});
    ASSERT_TRUE(isShown(history));
    auto* list = QAccessible::queryAccessibleInterface(history.findChild<kit::VirtualList*>());
    ASSERT_EQ(list->childCount(), 3);
    auto* row = list->child(1);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("two"));
    EXPECT_EQ(row->text(QAccessible::Description), QStringLiteral("2 of 3"));
    EXPECT_TRUE(row->state().focusable);
    EXPECT_EQ(list->indexOfChild(row), 1);
    EXPECT_EQ(row->child(0)->role(), QAccessible::StaticText);
    EXPECT_EQ(row->child(0)->text(QAccessible::Name), QStringLiteral("two"));
    rowsOf<HistoryRowView>(history)[1]->setFocus();
    EXPECT_TRUE(row->state().focused);
}

TEST_F(ListsAccessibilityTest, RowsThatAreKeptForLaterAreNotTold)
{
    for (const char* text : {"one", "two", "three"})
        store.addHistory(QString::fromUtf8(text), Date{});
    ASSERT_TRUE(isShown(history));
    historyPane.setQuery(QStringLiteral("two"));
    auto* list = QAccessible::queryAccessibleInterface(history.findChild<kit::VirtualList*>());
    ASSERT_EQ(list->childCount(), 1);
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), QStringLiteral("two"));
    EXPECT_EQ(list->child(1), nullptr);
}

TEST_F(ListsAccessibilityTest, EveryElementOfTheConfirmationHasNameAndRole)
{
    store.addHistory(QStringLiteral("one"), Date{});
    ASSERT_TRUE(isShown(history));
    historyPane.askToClear();
    auto& confirmation = *history.findChild<kit::MessageDialog*>();
    const auto* dialog = QAccessible::queryAccessibleInterface(&confirmation);
    EXPECT_EQ(dialog->role(), QAccessible::Dialog);
    EXPECT_EQ(dialog->text(QAccessible::Name), QStringLiteral("Clear all history?"));
    EXPECT_EQ(dialog->text(QAccessible::Description),
              QStringLiteral("This permanently removes every saved transcript and can't be undone."));
    const auto elements = elementsOf(confirmation);
    EXPECT_EQ(elements.at(QStringLiteral("Cancel")), QAccessible::PushButton);
    EXPECT_EQ(elements.at(QStringLiteral("Clear History")), QAccessible::PushButton);
}

TEST_F(ListsAccessibilityTest, EveryElementOfTheVocabularyHasNameAndRole)
{
    vocabularyPane.addApp({QStringLiteral("org.mail"), QStringLiteral("Mail")});
    store.addVocab(QStringLiteral("teh"), QStringLiteral("the"), vocabularyPane.scope());
    store.addVocab(QStringLiteral("adn"), QStringLiteral("and"), vocabularyPane.scope());
    const auto elements = elementsOf(vocabulary);
    EXPECT_EQ(elements.at(QStringLiteral("Apply replacements to")), QAccessible::ComboBox);
    EXPECT_EQ(elements.at(QStringLiteral("Add an app")), QAccessible::PushButton);
    EXPECT_EQ(elements.at(QStringLiteral("Replacements")), QAccessible::List);
    EXPECT_EQ(elements.at(QStringLiteral("teh → the")), QAccessible::ListItem);
    EXPECT_EQ(elements.at(QStringLiteral("Heard, 1 of 2")), QAccessible::EditableText);
    EXPECT_EQ(elements.at(QStringLiteral("Replace with, 2 of 2")), QAccessible::EditableText);
    EXPECT_EQ(elements.at(QStringLiteral("Delete replacement, teh → the")), QAccessible::PushButton);
    EXPECT_EQ(elements.at(QStringLiteral("Heard")), QAccessible::EditableText);
    EXPECT_EQ(elements.at(QStringLiteral("Remove Mail")), QAccessible::PushButton);
}

TEST_F(ListsAccessibilityTest, EveryElementOfTheChooserHasNameAndRole)
{
    applications.installed = {{QStringLiteral("a"), QStringLiteral("Alpha"), {}},
                              {QStringLiteral("b"), QStringLiteral("Beta"), {}}};
    AppChooser chooser(catalog, [](const AppInfo&) {});
    const auto elements = elementsOf(chooser);
    EXPECT_EQ(elements.at(QStringLiteral("Search")), QAccessible::EditableText);
    EXPECT_EQ(elements.at(QStringLiteral("Installed apps")), QAccessible::List);
    EXPECT_EQ(elements.at(QStringLiteral("Beta")), QAccessible::ListItem);
    EXPECT_EQ(elements.at(QStringLiteral("Choose")), QAccessible::PushButton);
}

} // namespace
} // namespace corvandi::testing
