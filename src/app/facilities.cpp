#include "app/facilities.h"

#include "core/speech/speech_locale.h"
#include "engines/speech_engines.h"
#include "views/hud/hud_view.h"

#include "system/audio/pulse_capture_authorization.h"
#include "system/files/private_folder.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace corvandi {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("Application", text);
}

/// For what may be deleted at any time.
QString cacheDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QLatin1String("/Corvandi");
}

void askForAccessibility(NoticePresenter& questions, const AtSpiAccessibilityClient::Answer& answer)
{
    const Question question{
        .notice = {translated("Turn on the desktop's accessibility support?"),
                   translated(
                       "Corvandi needs it to tell text fields from password fields, and to insert text "
                       "where you are typing. It stays on for your other applications, too.")},
        .accept = translated("Turn On"),
        .decline = translated("Not Now"),
    };
    questions.ask(question, [answer](Answer given) { answer(given == Answer::accept); });
}

std::unique_ptr<HUDContent> makeHUDContent(HUDModel& model)
{
    return std::make_unique<HUDView>(model);
}

} // namespace

/// Beside what other applications of the user keep; independent of this program's own name for Qt.
QString storeDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1String("/Corvandi");
}

Facilities::Facilities(SystemLog& theLog, const WindowSystem& windowSystem)
    : log(theLog)
    , storeQueue(QStringLiteral("io.corvandi.Corvandi.store"), log, files)
    , toldLock(queue, QDBusConnection::sessionBus())
    , session(windowSystem.openSession({queue, log, toldLock, makeHUDContent}))
    , appearance(QDBusConnection::sessionBus(), log)
    , accessibility(log, session->canWatchAndPostKeys(),
                    {.ask =
                         [this](const AtSpiAccessibilityClient::Answer& answer) {
                             askForAccessibility(questions, answer);
                         },
                     .remind = [this] { questions.bringToFront(); }})
    , systemSettings(DesktopSystemSettings::desktopsFromEnvironment(),
                     [this](const QString& text) {
                         notices.tell({text, {}});
                     })
    , focus([this] { return session->workspace().frontmostProcess(); }, queue, log)
    , eventTapFactory(session->eventTapFactory(), accessibility)
    , captureAuthorization(soundServer, queue, sandboxedApplicationId())
    , speechFramework(makeSpeechFramework(queue, log, files, cacheDirectory()))
{
}

Platform Facilities::forDictation()
{
    makePrivate(storeDirectory(), log);
    return {
        .queue = queue,
        .wallClock = wallClock,
        .log = log,
        .files = *files,
        .storeQueue = storeQueue,
        .eventTapFactory = eventTapFactory,
        .keyboard = session->keyboard(),
        .pasteboard = session->pasteboard(),
        .accessibility = accessibility,
        .focusedElements = focus,
        .workspace = session->workspace(),
        .sessionLock = session->sessionLock(),
        .audioInput = audioInput,
        .audioConverterFactory = audioConverterFactory,
        .captureAuthorization = captureAuthorization,
        .speechFramework = *speechFramework,
        .languageModel = languageModel,
        .hudPanelFactory = session->hudPanelFactory(),
        .locale = speechLocale(userDefaults, log),
        .storeDirectory = storeDirectory(),
    };
}

} // namespace corvandi
