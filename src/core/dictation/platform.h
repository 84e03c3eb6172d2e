#pragma once

#include "base/locale.h"
#include "base/main_queue.h"
#include "ports/accessibility_client.h"
#include "ports/audio_converter.h"
#include "ports/audio_input.h"
#include "ports/capture_authorization.h"
#include "ports/event_tap.h"
#include "ports/file_system.h"
#include "ports/focused_element.h"
#include "ports/hud_panel.h"
#include "ports/keyboard.h"
#include "ports/language_model.h"
#include "ports/pasteboard.h"
#include "ports/session_lock.h"
#include "ports/speech_framework.h"
#include "ports/system_log.h"
#include "ports/wall_clock.h"
#include "ports/work_queue.h"
#include "ports/workspace.h"

#include <QString>

namespace corvandi {

/// Every facility of the platform that a dictation rests on. All of them outlive the controller.
struct Platform {
    MainQueue& queue;
    WallClock& wallClock;
    SystemLog& log;
    FileSystem& files;
    /// Where the store's writes run.
    WorkQueue& storeQueue;
    EventTapFactory& eventTapFactory;
    Keyboard& keyboard;
    Pasteboard& pasteboard;
    AccessibilityClient& accessibility;
    FocusedElementMonitor& focusedElements;
    Workspace& workspace;
    SessionLock& sessionLock;
    AudioInput& audioInput;
    AudioConverterFactory& audioConverterFactory;
    CaptureAuthorization& captureAuthorization;
    SpeechFramework& speechFramework;
    LanguageModel& languageModel;
    HUDPanelFactory& hudPanelFactory;
    /// The language in which the user dictates.
    Locale locale;
    /// Where history and vocabulary live.
    QString storeDirectory;
};

} // namespace corvandi
