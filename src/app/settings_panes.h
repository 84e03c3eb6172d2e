#pragma once

#include "app/facilities.h"
#include "dictation/dictation_controller.h"
#include "panes/general_pane.h"
#include "panes/history_pane.h"
#include "panes/hotkey_recorder.h"
#include "panes/permission_rows.h"
#include "panes/settings_navigator.h"
#include "panes/vocabulary_pane.h"
#include "platform/linux/key_capture/x11_key_capture.h"
#include "platform/linux/login_item/autostart_login_item.h"
#include "platform/linux/workspace/x11_application_directory.h"
#include "storage/app_catalog.h"

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
    X11KeyCapture keyCapture_;
    X11ApplicationDirectory applications_;
    AppCatalog catalog_;
    GeneralPane general_;
    HotkeyRecorder recorder_;
    VocabularyPane vocabulary_;
    HistoryPane history_;
    PermissionsPane permissions_;
};

} // namespace corvandi
