#include "app/settings_panes.h"

#include "settings_ui/app_chooser.h"
#include "settings_ui/general_pane_view.h"
#include "settings_ui/history_pane_view.h"
#include "settings_ui/permissions_pane_view.h"
#include "settings_ui/settings_view.h"
#include "settings_ui/vocabulary_pane_view.h"

#include <QCoreApplication>

#include <utility>

namespace corvandi {
namespace {

/// The user's own copy: unlike what a dictation leaves on the clipboard, it is not marked as concealed.
void copy(Pasteboard& pasteboard, const QString& text)
{
    pasteboard.clearContents();
    pasteboard.setString(text, pasteboard_type::string);
}

} // namespace

SettingsPanes::SettingsPanes(Facilities& facilities, Settings& settings, PermissionsModel& permissions,
                             DictationController& controller)
    : loginItem_(AutostartFolders::fromEnvironment(), QCoreApplication::applicationFilePath(),
                 facilities.files)
    , keyCapture_(facilities.log)
    , applications_(facilities.workspace.applications())
    , catalog_(applications_, facilities.workspace, Locale::current())
    , general_({settings, facilities.languageModel, loginItem_, facilities.systemSettings, facilities.log})
    , recorder_(settings, keyCapture_, facilities.queue, [&controller] { controller.applyHotkey(); })
    , vocabulary_(controller.store())
    , history_(controller.store(), [&facilities](const QString& text) { copy(facilities.pasteboard, text); })
    , permissions_(permissions, facilities.systemSettings)
{
}

std::unique_ptr<QWidget> SettingsPanes::makeView(SettingsNavigator& navigator)
{
    const auto browse = [this](QWidget& parent, VocabularyPaneView::Picked picked) {
        AppChooser::open(catalog_, parent, std::move(picked));
    };
    return std::make_unique<SettingsView>(
        navigator, SettingsView::Panes{
                       .general = [this] { return std::make_unique<GeneralPaneView>(general_, recorder_); },
                       .vocabulary =
                           [this, browse] {
                               return std::make_unique<VocabularyPaneView>(vocabulary_, catalog_, browse);
                           },
                       .history = [this] { return std::make_unique<HistoryPaneView>(history_); },
                       .permissions = [this] { return std::make_unique<PermissionsPaneView>(permissions_); },
                   });
}

} // namespace corvandi
