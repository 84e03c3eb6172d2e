#include "app/application.h"

#include "dictation/dictation_controller.h"
#include "platform/linux/accessibility/at_spi_accessibility_client.h"
#include "platform/linux/audio/pulse_audio_input.h"
#include "platform/linux/audio/pulse_capture_authorization.h"
#include "platform/linux/audio/pulse_server.h"
#include "platform/linux/audio/sandbox.h"
#include "platform/linux/audio/speex_audio_converter.h"
#include "platform/linux/event_loop/qt_main_queue.h"
#include "platform/linux/files/posix_file_system.h"
#include "platform/linux/files/serial_work_queue.h"
#include "platform/linux/files/system_wall_clock.h"
#include "platform/linux/focus/at_spi_focus.h"
#include "platform/linux/hud_panel/x11_hud_panel.h"
#include "platform/linux/language_model/no_language_model.h"
#include "platform/linux/pasteboard/x11_pasteboard.h"
#include "platform/linux/pocketsphinx/model_files.h"
#include "platform/linux/pocketsphinx/pocketsphinx_framework.h"
#include "platform/linux/preferences/qt_user_defaults.h"
#include "platform/linux/workspace/x11_workspace.h"
#include "platform/linux/x11/x11_event_tap.h"
#include "platform/linux/x11/x11_keyboard.h"

#include <QStandardPaths>

namespace corvandi {
namespace {

/// Beside what other applications of the user keep; independent of this program's own name for Qt.
QString storeDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1String("/Corvandi");
}

} // namespace

/// In the order of creation; destroyed in the reverse one.
struct Application::Objects {
    explicit Objects(SystemLog& theLog)
        : log(theLog)
    {
    }

    SystemLog& log;
    QtMainQueue queue;
    QtUserDefaults userDefaults{log};
    Settings settings{userDefaults};
    X11Workspace workspace{queue};
    /// Only silent checks are made so far, so nobody is ever asked.
    AtSpiAccessibilityClient accessibility{log, [](const AtSpiAccessibilityClient::Answer&) {}};
    AtSpiFocus focus{[this] { return workspace.frontmostProcess(); }, log};
    WatchedChord watchedChord;
    X11EventTaps eventTaps{log, watchedChord};
    X11Keyboard keyboard{log, watchedChord, [this] { return workspace.frontmostIsTerminal(); }};
    X11Pasteboard pasteboard{queue};
    PulseServer soundServer{queue, log};
    PulseAudioInput audioInput{soundServer, queue, log};
    PulseCaptureAuthorization captureAuthorization{soundServer, queue, sandboxedApplicationId()};
    SpeexAudioConverters audioConverters;
    PocketSphinxFramework speechFramework{installedModelFolder(), queue};
    NoLanguageModel languageModel{queue};
    X11HudPanels hudPanels;
    SystemWallClock wallClock;
    PosixFileSystem files;
    SerialWorkQueue storeQueue{QStringLiteral("io.corvandi.Corvandi.store")};
    std::shared_ptr<DictationController> controller =
        DictationController::create(settings, Platform{
                                                  .queue = queue,
                                                  .wallClock = wallClock,
                                                  .log = log,
                                                  .files = files,
                                                  .storeQueue = storeQueue,
                                                  .eventTaps = eventTaps,
                                                  .keyboard = keyboard,
                                                  .pasteboard = pasteboard,
                                                  .accessibility = accessibility,
                                                  .focusedElements = focus,
                                                  .workspace = workspace,
                                                  .audioInput = audioInput,
                                                  .audioConverters = audioConverters,
                                                  .captureAuthorization = captureAuthorization,
                                                  .speechFramework = speechFramework,
                                                  .languageModel = languageModel,
                                                  .hudPanels = hudPanels,
                                                  .locale = Locale::current(),
                                                  .storeDirectory = storeDirectory(),
                                              });
};

Application::Application(SystemLog& log)
    : objects_(std::make_unique<Objects>(log))
{
}

Application::~Application()
{
    objects_->controller->shutDown();
}

void Application::start()
{
    DictationController& controller = *objects_->controller;
    controller.applyHotkey();
    controller.startHotkey();
    controller.prepareModel();
    objects_->log.write(QStringLiteral("ready"));
}

} // namespace corvandi
