#include "app/facilities.h"

#include "platform/linux/audio/sandbox.h"
#include "platform/linux/pocketsphinx/model_files.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace corvandi {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("Application", text);
}

/// Beside what other applications of the user keep; independent of this program's own name for Qt.
QString storeDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1String("/Corvandi");
}

PasteShortcut pasteShortcutOf(ApplicationKind kind)
{
    switch (kind) {
    case ApplicationKind::terminal:
        return PasteShortcut::controlShiftV;
    case ApplicationKind::terminalWithoutPaste:
        return PasteShortcut::none;
    case ApplicationKind::ordinary:
        break;
    }
    return PasteShortcut::controlV;
}

void askForAccessibility(UpdatePresenter& questions, const AtSpiAccessibilityClient::Answer& answer)
{
    const UpdateQuestion question{
        .message = {translated("Turn on the desktop's accessibility support?"),
                    translated(
                        "Corvandi needs it to tell text fields from password fields, and to insert text "
                        "where you are typing. It stays on for your other applications, too.")},
        .accept = translated("Turn On"),
        .decline = translated("Not Now"),
    };
    questions.ask(question, [answer](UpdateAnswer given) { answer(given == UpdateAnswer::accept); });
}

} // namespace

Facilities::Facilities(SystemLog& theLog)
    : log(theLog)
    , storeQueue(QStringLiteral("io.corvandi.Corvandi.store"))
    , appearance(QDBusConnection::sessionBus(), log)
    , accessibility(log, {.ask =
                              [this](const AtSpiAccessibilityClient::Answer& answer) {
                                  askForAccessibility(questions, answer);
                              },
                          .remind = [this] { questions.bringToFront(); }})
    , systemSettings(DesktopSystemSettings::desktopsFromEnvironment(),
                     [this](const QString& text) {
                         notices.tell({text, {}});
                     })
    , focus([this] { return workspace.frontmostProcess(); }, queue, log)
    , keyboard(log, watchedChord, [this] { return pasteShortcutOf(workspace.frontmostKind()); })
    , captureAuthorization(soundServer, queue, sandboxedApplicationId())
    , speechFramework(installedModelFolder(), queue)
{
}

Platform Facilities::forDictation()
{
    return {
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
    };
}

} // namespace corvandi
