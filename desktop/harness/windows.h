#pragma once

#include "harness/area.h"
#include "harness/x_display.h"

#include <sys/types.h>

#include <optional>
#include <string>

namespace corvandi::harness {

/// What is on the screen, as the window manager and the server tell it.
class Windows {
public:
    Windows();

    /// Waits until the window with that title has the focus; false when `deadline` passes first.
    [[nodiscard]] bool waitUntilActive(const std::string& title,
                                       Clock::time_point deadline = Clock::now() + patience) const;
    [[nodiscard]] std::string activeTitle() const;
    /// Where the contents of the window with the focus are; nothing when none has it.
    [[nodiscard]] std::optional<Area> activeArea() const;
    /// Waits until there is a window with that title, or until there is none.
    [[nodiscard]] bool waitUntilOpen(const std::string& title,
                                     Clock::time_point deadline = Clock::now() + patience) const;
    [[nodiscard]] bool waitUntilClosed(const std::string& title,
                                       Clock::time_point deadline = Clock::now() + patience) const;
    [[nodiscard]] bool isOpen(const std::string& title) const;
    /// Waits until the process shows a window, or until it shows none.
    [[nodiscard]] bool waitUntilShown(pid_t process,
                                      Clock::time_point deadline = Clock::now() + patience) const;
    [[nodiscard]] bool waitUntilHidden(pid_t process,
                                       Clock::time_point deadline = Clock::now() + patience) const;
    [[nodiscard]] bool isShown(pid_t process) const;

private:
    XDisplay display_;
};

} // namespace corvandi::harness
