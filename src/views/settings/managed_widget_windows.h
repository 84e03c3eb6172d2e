#pragma once

#include "shell/managed_windows.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace corvandi {

/// Calls `action` each time that the widget appears on the screen, and when the application becomes active
/// again while the widget is there: what was changed in another program meanwhile shows up then.
void whenAppearing(QWidget& widget, std::function<void()> action);

/// The program's windows, made of widgets. They are framed by the window manager, opened in the middle of
/// the primary screen, and given the keyboard also when the user is busy in another program: they only
/// open because the user has asked for them.
///
/// Thread: main thread only. A window's content is made together with it and goes with it.
class ManagedWidgetWindows : public ManagedWindows {
public:
    /// Makes what is inside of a window. The welcome calls `getStarted` when the user completes it.
    struct Contents {
        std::function<std::unique_ptr<QWidget>()> settings;
        std::function<std::unique_ptr<QWidget>(Callback getStarted)> welcome;
    };
    /// Brings a window that is shown to the front and gives it the keyboard, as far as the toolkit itself
    /// can't. May be absent.
    using BringToFront = std::function<void(QWidget& window)>;

    explicit ManagedWidgetWindows(Contents contents, BringToFront bringToFront = {});

    [[nodiscard]] std::unique_ptr<ManagedWindow> makeSettingsWindow(Callback willClose) override;
    [[nodiscard]] std::unique_ptr<ManagedWindow> makeWelcomeWindow(Callback getStarted,
                                                                   Callback willClose) override;

private:
    Contents contents_;
    BringToFront bringToFront_;
};

} // namespace corvandi
