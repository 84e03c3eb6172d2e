#pragma once

#include "shell/panes/settings_navigator.h"

#include <functional>
#include <memory>

namespace corvandi {

/// One of the program's two windows, hidden when it is made.
///
/// Thread: main thread only.
class ManagedWindow {
public:
    virtual ~ManagedWindow() = default;

    virtual void center() = 0;
    /// Shows the window, brings it to the front and gives it the keyboard.
    virtual void activate() = 0;
    /// Hides it, as its close button does; it can be activated again.
    virtual void close() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
};

/// Makes the program's windows.
class ManagedWindows {
public:
    using Callback = std::function<void()>;

    virtual ~ManagedWindows() = default;

    /// "Corvandi Settings", 660 by 460 points, resizable. `willClose` is called when it is about to close.
    [[nodiscard]] virtual std::unique_ptr<ManagedWindow> makeSettingsWindow(Callback willClose) = 0;
    /// "Welcome to Corvandi", of the size that its content needs. `getStarted` is called when the user
    /// completes it.
    [[nodiscard]] virtual std::unique_ptr<ManagedWindow> makeWelcomeWindow(Callback getStarted,
                                                                           Callback willClose) = 0;
};

} // namespace corvandi
