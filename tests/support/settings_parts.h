#pragma once

#include "shell/panes/general_pane.h"
#include "shell/panes/hotkey_recorder.h"
#include "shell/panes/permission_rows.h"
#include "shell/panes/settings_navigator.h"
#include "support/fake_accessibility.h"
#include "support/fake_key_capture.h"
#include "support/fake_language_model.h"
#include "support/fake_login_item.h"
#include "support/fake_session.h"
#include "support/fake_system_settings.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

namespace corvandi::testing {

/// What the windows show, on facilities that the test sets.
struct SettingsParts {
    VirtualQueue queue;
    FakeUserDefaults defaults;
    FakeLanguageModel model{queue};
    FakeLoginItem loginItem;
    FakeSystemSettings systemSettings;
    FakeKeyCapture capture;
    FakeCaptureAuthorization microphone;
    FakeAccessibility accessibility;
    RecordingLog log;
    Settings settings{defaults};
    PermissionsModel permissions{microphone, accessibility};
    SettingsNavigator navigator;
    GeneralPane general{{settings, model, loginItem, systemSettings, log}};
    int hotkeysApplied = 0;
    HotkeyRecorder recorder{settings, capture, queue, log, [this] { ++hotkeysApplied; }};
    PermissionsPane permissionsPane{permissions, systemSettings};
    int started = 0;

    [[nodiscard]] std::unique_ptr<Welcome> makeWelcome()
    {
        return std::make_unique<Welcome>(permissions, queue, [this] { ++started; });
    }
};

} // namespace corvandi::testing
