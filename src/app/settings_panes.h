#pragma once

#include "app/facilities.h"
#include "core/data/app_catalog.h"
#include "core/dictation/dictation_controller.h"
#include "shell/panes/general_pane.h"
#include "shell/panes/history_pane.h"
#include "shell/panes/hotkey_recorder.h"
#include "shell/panes/permission_rows.h"
#include "shell/panes/settings_navigator.h"
#include "shell/panes/vocabulary_pane.h"
#include "system/desktop/autostart_login_item.h"

#include <QWidget>

#include <memory>

namespace corvandi {

/// What the pages of the settings window work with. Made with the window, since nobody needs it before.
///
/// The referees outlive it, and it outlives the window.
class SettingsPanes {
public:
    SettingsPanes(Facilities& facilities, Settings& settings, PermissionsModel& permissions,
                  DictationController& controller);

    /// The content of the window.
    [[nodiscard]] std::unique_ptr<QWidget> makeView(SettingsNavigator& navigator);

private:
    AutostartLoginItem loginItem_;
    AppCatalog catalog_;
    GeneralPane general_;
    HotkeyRecorder recorder_;
    VocabularyPane vocabulary_;
    HistoryPane history_;
    PermissionsPane permissions_;
};

} // namespace corvandi
