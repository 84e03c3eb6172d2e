#include "settings_fixture.h"

#include "views/appearance/appearance_follower.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/style.h"
#include "views/settings/managed_widget_windows.h"

#include <QApplication>
#include <QHBoxLayout>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

const QColor accent(48, 140, 198);

/// Keeps pictures of everything that the windows can look like, to be looked at.
class SettingsPictures : public SettingsFixture, public ::testing::WithParamInterface<const char*> {
protected:
    SettingsPictures()
    {
        QApplication::setPalette(isDarkScheme() ? darkPalette(accent) : lightPalette(accent));
    }
    ~SettingsPictures() override { QApplication::setPalette(QPalette()); }

    [[nodiscard]] static bool isDarkScheme() { return QLatin1String(GetParam()) == QLatin1String("dark"); }

    static void keep(QWidget& window, const QString& name)
    {
        window.show();
        ASSERT_TRUE(waitUntil([&] { return window.isVisible(); }));
        // Switches glide for a moment.
        runFor(200ms);
        const QPixmap picture = window.grab();
        const QString scale = QString::number(picture.devicePixelRatio());
        EXPECT_TRUE(picture.save(QStringLiteral(SCREENSHOTS "/settings_%1_%2_%3x.png")
                                     .arg(name, QLatin1String(GetParam()), scale)));
    }
};

INSTANTIATE_TEST_SUITE_P(Looks, SettingsPictures, ::testing::Values("light", "dark"),
                         [](const auto& parameter) { return parameter.param; });

TEST_P(SettingsPictures, GeneralPane)
{
    const auto view = makeSettings();
    view->resize(SettingsView::smallestSize);
    keep(*view, QStringLiteral("general"));
    parts.recorder.beginRecording();
    parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
    parts.general.refresh();
    parts.queue.drain();
    parts.loginItem.failure = QStringLiteral("Could not write the autostart entry: Permission denied");
    parts.general.setLaunchAtLogin(true);
    view->resize(660, 640);
    keep(*view, QStringLiteral("general_everything"));
    view->resize(1100, 700);
    keep(*view, QStringLiteral("general_wide"));
}

TEST_P(SettingsPictures, PermissionsPane)
{
    parts.navigator.setPane(SettingsPane::permissions);
    parts.accessibility.trusted = false;
    const auto view = makeSettings();
    view->resize(SettingsView::smallestSize);
    keep(*view, QStringLiteral("permissions"));
    parts.accessibility.trusted = true;
    parts.permissions.refresh();
    keep(*view, QStringLiteral("permissions_granted"));
}

TEST_P(SettingsPictures, EmptyPane)
{
    parts.navigator.setPane(SettingsPane::vocabulary);
    const auto view = makeSettings();
    view->resize(SettingsView::smallestSize);
    keep(*view, QStringLiteral("empty"));
}

TEST_P(SettingsPictures, Welcome)
{
    parts.microphone.present = AuthorizationStatus::notDetermined;
    parts.accessibility.trusted = false;
    WelcomeView view(parts.makeWelcome());
    view.setFixedHeight(view.heightForWidth(view.width()));
    keep(view, QStringLiteral("welcome"));
    parts.accessibility.trusted = true;
    parts.permissions.refresh();
    keep(view, QStringLiteral("welcome_half"));
    parts.microphone.present = AuthorizationStatus::authorized;
    parts.permissions.refresh();
    keep(view, QStringLiteral("welcome_granted"));
}

TEST_P(SettingsPictures, KeyboardFocusAndDisabled)
{
    kit::GroupedForm form;
    form.resize(460, 420);
    kit::FormSection& section = form.addSection(QStringLiteral("Header"));
    kit::ToggleRow& focused = section.addToggle(QStringLiteral("Focused"));
    focused.toggle().setChecked(true);
    section.addToggle(QStringLiteral("Off")).toggle().setChecked(false);
    section.addToggle(QStringLiteral("Disabled")).toggle().setEnabled(false);
    QWidget line;
    QHBoxLayout buttons(&line);
    kit::Button standard(QStringLiteral("Standard"));
    kit::Button prominent(QStringLiteral("Prominent"), kit::ButtonRole::prominent);
    kit::Button destructive(QStringLiteral("Clear…"), kit::ButtonRole::destructive);
    kit::IconButton trash(Symbol::trash, QStringLiteral("Delete"), kit::IconButtonRole::destructive);
    for (QWidget* button : {static_cast<QWidget*>(&standard), static_cast<QWidget*>(&prominent),
                            static_cast<QWidget*>(&destructive), static_cast<QWidget*>(&trash)})
        buttons.addWidget(button);
    section.addWidget(line);
    kit::TextField search(Symbol::magnifyingglass);
    search.setPlaceholder(QStringLiteral("Search"));
    section.addWidget(search);
    section.setFooter(
        QStringLiteral("A footer that explains what the section is about, in two lines if it has to."));
    form.show();
    form.activateWindow();
    ASSERT_TRUE(waitUntil([&] { return form.isActiveWindow(); }));
    search.setFocus();
    QTest::keyClick(&search, Qt::Key_Tab);
    EXPECT_TRUE(focused.toggle().hasFocus());
    EXPECT_TRUE(kit::showsFocus(focused.toggle()));
    keep(form, QStringLiteral("kit"));
    while (!prominent.hasFocus())
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    keep(form, QStringLiteral("kit_button"));
    // They belong to the test.
    for (QWidget* widget : {static_cast<QWidget*>(&line), static_cast<QWidget*>(&search)})
        widget->setParent(nullptr);
}

} // namespace
} // namespace corvandi::testing
