#include "session/x11/x11_desktop_session.h"

#include "session/x11/keys/x11_connection.h"
#include "session/x11/windows/bring_to_front.h"

#include <utility>

namespace corvandi {
namespace {

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

} // namespace

X11DesktopSession::X11DesktopSession(SessionNeeds needs)
    : canWatchAndPostKeys_(X11Connection::isPossible())
    , workspace_(needs.queue)
    , eventTapFactory_(needs.log, watchedChord_)
    , keyboard_(needs.log, watchedChord_, [this] { return pasteShortcutOf(workspace_.frontmostKind()); })
    , keyCapture_(needs.log)
    , pasteboard_(needs.queue)
    , hudPanelFactory_(std::move(needs.makeHUDContent))
    , sessionLock_(needs.queue, needs.toldLock)
{
    if (!canWatchAndPostKeys_)
        needs.log.write(QStringLiteral(
            "the X server lacks XInput 2.2, XKB or XTEST, so keys can't be watched or posted"));
}

ApplicationDirectory& X11DesktopSession::applicationDirectory()
{
    if (!applicationDirectory_)
        applicationDirectory_.emplace(workspace_.applications());
    return *applicationDirectory_;
}

void X11DesktopSession::bringToFront(const QWidget& window)
{
    corvandi::bringToFront(window);
}

} // namespace corvandi
