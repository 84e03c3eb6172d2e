#include "app/settings_panes.h"

#include "views/settings/app_chooser.h"
#include "views/settings/general_pane_view.h"
#include "views/settings/history_pane_view.h"
#include "views/settings/permissions_pane_view.h"
#include "views/settings/settings_view.h"
#include "views/settings/vocabulary_pane_view.h"

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
                 *facilities.files)
    , catalog_(facilities.session->applicationDirectory(), facilities.session->workspace(), Locale::current())
    , general_({settings, facilities.languageModel, loginItem_, facilities.systemSettings, facilities.log})
    , recorder_(settings, facilities.session->keyCapture(), facilities.queue, facilities.log,
                [&controller] { controller.applyHotkey(); })
    , vocabulary_(controller.store())
    , history_(controller.store(),
               [&facilities](const QString& text) { copy(facilities.session->pasteboard(), text); })
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
