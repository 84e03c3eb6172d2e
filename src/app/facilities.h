#pragma once

#include "dictation/platform.h"
#include "platform/linux/accessibility/at_spi_accessibility_client.h"
#include "platform/linux/accessibility/permitted_event_taps.h"
#include "platform/linux/appearance/portal_appearance.h"
#include "platform/linux/audio/pulse_audio_input.h"
#include "platform/linux/audio/pulse_capture_authorization.h"
#include "platform/linux/audio/pulse_server.h"
#include "platform/linux/audio/speex_audio_converter.h"
#include "platform/linux/event_loop/qt_main_queue.h"
#include "platform/linux/files/posix_file_system.h"
#include "platform/linux/files/serial_work_queue.h"
#include "platform/linux/files/system_wall_clock.h"
#include "platform/linux/focus/at_spi_focus.h"
#include "platform/linux/hud_panel/x11_hud_panel.h"
#include "platform/linux/language_model/chat_server_model.h"
#include "platform/linux/pasteboard/x11_pasteboard.h"
#include "platform/linux/pocketsphinx/pocketsphinx_framework.h"
#include "platform/linux/preferences/qt_user_defaults.h"
#include "platform/linux/system_settings/desktop_system_settings.h"
#include "platform/linux/workspace/x11_workspace.h"
#include "platform/linux/x11/x11_event_tap.h"
#include "platform/linux/x11/x11_keyboard.h"
#include "updates_view/update_dialogs.h"

namespace corvandi {

/// The facilities of a Linux desktop with X11, one of each, in the order of creation; destroyed in the
/// reverse one.
struct Facilities {
    explicit Facilities(SystemLog& theLog);
    Facilities(const Facilities&) = delete;
    Facilities& operator=(const Facilities&) = delete;

    /// What a dictation needs of them.
    [[nodiscard]] Platform forDictation();

    SystemLog& log;
    QtMainQueue queue;
    QtUserDefaults userDefaults{log};
    SystemWallClock wallClock;
    PosixFileSystem files;
    SerialWorkQueue storeQueue;
    X11Workspace workspace{queue};
    PortalAppearance appearance;
    /// One thing to tell, and one to ask, at a time.
    UpdateDialogs notices{QStringLiteral("Corvandi")};
    UpdateDialogs questions{QStringLiteral("Corvandi")};
    AtSpiAccessibilityClient accessibility;
    DesktopSystemSettings systemSettings;
    AtSpiFocus focus;
    WatchedChord watchedChord;
    X11EventTaps serverTaps{log, watchedChord};
    PermittedEventTaps eventTaps{serverTaps, accessibility};
    X11Keyboard keyboard;
    X11Pasteboard pasteboard{queue};
    PulseServer soundServer{queue, log};
    PulseAudioInput audioInput{soundServer, queue, log};
    PulseCaptureAuthorization captureAuthorization;
    SpeexAudioConverters audioConverters;
    PocketSphinxFramework speechFramework;
    ChatServerModel languageModel{queue, userDefaults, log};
    X11HudPanels hudPanels;
};

} // namespace corvandi
