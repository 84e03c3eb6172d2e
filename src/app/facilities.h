#pragma once

#include "core/dictation/platform.h"
#include "session/find_window_system.h"
#include "system/accessibility/at_spi_accessibility_client.h"
#include "system/accessibility/at_spi_focus.h"
#include "system/audio/pulse_audio_input.h"
#include "system/audio/pulse_capture_authorization.h"
#include "system/audio/pulse_server.h"
#include "system/audio/speex_audio_converter.h"
#include "system/desktop/bus_session_lock.h"
#include "system/desktop/desktop_system_settings.h"
#include "system/desktop/portal_appearance.h"
#include "system/files/posix_file_system.h"
#include "system/files/serial_work_queue.h"
#include "system/files/system_wall_clock.h"
#include "system/language_model/chat_server_model.h"
#include "system/preferences/qt_user_defaults.h"
#include "system/process/qt_main_queue.h"
#include "views/dialogs/notice_dialogs.h"

namespace corvandi {

/// Where history and vocabulary live.
[[nodiscard]] QString storeDirectory();

/// The facilities of a Linux desktop, one of each, in the order of creation; destroyed in the reverse one.
struct Facilities {
    Facilities(SystemLog& theLog, const WindowSystem& windowSystem);
    Facilities(const Facilities&) = delete;
    Facilities& operator=(const Facilities&) = delete;

    /// What a dictation needs of them. Sees to it that nobody else can read what is kept.
    [[nodiscard]] Platform forDictation();

    SystemLog& log;
    QtMainQueue queue;
    QtUserDefaults userDefaults{log};
    SystemWallClock wallClock;
    std::shared_ptr<PosixFileSystem> files = std::make_shared<PosixFileSystem>();
    SerialWorkQueue storeQueue;
    BusSessionLock toldLock;
    std::unique_ptr<DesktopSession> session;
    PortalAppearance appearance;
    /// One thing to tell, and one to ask, at a time.
    NoticeDialogs notices{QStringLiteral("Corvandi")};
    NoticeDialogs questions{QStringLiteral("Corvandi")};
    AtSpiAccessibilityClient accessibility;
    DesktopSystemSettings systemSettings;
    AtSpiFocus focus;
    PermittedEventTapFactory eventTapFactory;
    PulseServer soundServer{queue, log};
    PulseAudioInput audioInput{soundServer, queue, log};
    PulseCaptureAuthorization captureAuthorization;
    SpeexAudioConverterFactory audioConverterFactory;
    std::unique_ptr<SpeechFramework> speechFramework;
    ChatServerModel languageModel{queue, userDefaults, log};
};

} // namespace corvandi
