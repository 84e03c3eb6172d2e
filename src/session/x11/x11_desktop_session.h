#pragma once

#include "ports/desktop_session.h"
#include "session/x11/clipboard/x11_pasteboard.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_event_tap.h"
#include "session/x11/keys/x11_key_capture.h"
#include "session/x11/keys/x11_keyboard.h"
#include "session/x11/panel/x11_hud_panel.h"
#include "session/x11/windows/x11_application_directory.h"
#include "session/x11/windows/x11_session_lock.h"
#include "session/x11/windows/x11_workspace.h"
#include "session/x11/windows/xembed_tray.h"

#include <optional>

namespace corvandi {

/// The ports of an X11 session.
///
/// Thread: main thread only.
class X11DesktopSession : public DesktopSession {
public:
    explicit X11DesktopSession(SessionNeeds needs);

    [[nodiscard]] bool canWatchAndPostKeys() const override { return canWatchAndPostKeys_; }
    [[nodiscard]] EventTapFactory& eventTapFactory() override { return eventTapFactory_; }
    [[nodiscard]] Keyboard& keyboard() override { return keyboard_; }
    [[nodiscard]] KeyCapture& keyCapture() override { return keyCapture_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] ApplicationDirectory& applicationDirectory() override;
    [[nodiscard]] HUDPanelFactory& hudPanelFactory() override { return hudPanelFactory_; }
    [[nodiscard]] WindowTray& windowTray() override { return windowTray_; }
    [[nodiscard]] SessionLock& sessionLock() override { return sessionLock_; }
    void bringToFront(const QWidget& window) override;

private:
    bool canWatchAndPostKeys_;
    X11Workspace workspace_;
    /// Only the settings need it.
    std::optional<X11ApplicationDirectory> applicationDirectory_;
    WatchedChord watchedChord_;
    X11EventTapFactory eventTapFactory_;
    X11Keyboard keyboard_;
    X11KeyCapture keyCapture_;
    X11Pasteboard pasteboard_;
    X11HUDPanelFactory hudPanelFactory_;
    XEmbedTray windowTray_;
    X11SessionLock sessionLock_;
};

} // namespace corvandi
