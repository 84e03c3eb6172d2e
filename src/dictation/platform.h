#pragma once

#include "base/locale.h"
#include "base/main_queue.h"
#include "base/system_log.h"
#include "hud/hud_panel.h"
#include "platform/accessibility_client.h"
#include "platform/audio_converter.h"
#include "platform/audio_input.h"
#include "platform/capture_authorization.h"
#include "platform/event_tap.h"
#include "platform/file_system.h"
#include "platform/focused_element.h"
#include "platform/keyboard.h"
#include "platform/language_model.h"
#include "platform/pasteboard.h"
#include "platform/speech_framework.h"
#include "platform/wall_clock.h"
#include "platform/work_queue.h"
#include "platform/workspace.h"

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
    EventTaps& eventTaps;
    Keyboard& keyboard;
    Pasteboard& pasteboard;
    AccessibilityClient& accessibility;
    FocusedElementMonitor& focusedElements;
    Workspace& workspace;
    AudioInput& audioInput;
    AudioConverters& audioConverters;
    CaptureAuthorization& captureAuthorization;
    SpeechFramework& speechFramework;
    LanguageModel& languageModel;
    HUDPanels& hudPanels;
    /// The language in which the user dictates.
    Locale locale;
    /// Where history and vocabulary live.
    QString storeDirectory;
};

} // namespace corvandi
