#pragma once

#include "base/main_queue.h"
#include "ports/application_directory.h"
#include "ports/event_tap.h"
#include "ports/hud_content.h"
#include "ports/hud_panel.h"
#include "ports/key_capture.h"
#include "ports/keyboard.h"
#include "ports/pasteboard.h"
#include "ports/session_lock.h"
#include "ports/system_log.h"
#include "ports/window_tray.h"
#include "ports/workspace.h"

#include <QString>

#include <functional>
#include <memory>

class QWidget;

namespace corvandi {

/// The ports that depend on the window system, each there once, for as long as this object lives.
///
/// Thread: main thread only. Made after the application object of the toolkit and destroyed before it.
class DesktopSession {
public:
    virtual ~DesktopSession() = default;

    /// Whether this session lets a program watch and post keys at all; if not, the log says why. Never
    /// changes.
    [[nodiscard]] virtual bool canWatchAndPostKeys() const = 0;
    [[nodiscard]] virtual EventTapFactory& eventTapFactory() = 0;
    [[nodiscard]] virtual Keyboard& keyboard() = 0;
    [[nodiscard]] virtual KeyCapture& keyCapture() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual Workspace& workspace() = 0;
    [[nodiscard]] virtual ApplicationDirectory& applicationDirectory() = 0;
    [[nodiscard]] virtual HUDPanelFactory& hudPanelFactory() = 0;
    [[nodiscard]] virtual WindowTray& windowTray() = 0;
    /// Knows what the desktop tells of the lock, and what can be seen of lockers that tell nobody.
    [[nodiscard]] virtual SessionLock& sessionLock() = 0;
    /// Brings a window of this program that is shown to the front and gives it the keyboard. To be called
    /// only after the user has asked for the window. Does not wait.
    virtual void bringToFront(const QWidget& window) = 0;
};

/// What a session needs of the program; all of it outlives the session.
struct SessionNeeds {
    MainQueue& queue;
    SystemLog& log;
    /// What the desktop tells of the lock, whatever its window system is.
    SessionLock& toldLock;
    HUDContentFactory makeHUDContent;
};

} // namespace corvandi
