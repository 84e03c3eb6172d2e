#include "settings_fixture.h"

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

class SettingsAccessibilityTest : public SettingsFixture {
protected:
    /// The interactive elements of `view` by their names; checks each of them.
    [[nodiscard]] std::map<QString, QAccessible::Role> elementsOf(QWidget& view)
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
            EXPECT_TRUE(found.emplace(name, element.role()).second)
                << name.toStdString() << " is there twice";
        });
        return found;
    }
};

TEST_F(SettingsAccessibilityTest, EveryElementOfTheGeneralPaneHasNameAndRole)
{
    parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
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

} // namespace
} // namespace corvandi::testing
