#pragma once

#include <QString>

#include <optional>

#include <sys/types.h>

namespace corvandi {

/// The applications of the session.
///
/// Thread: main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The identifier of the application that owns the active window; nothing when no window is active
    /// or its application can't be told. At most a few milliseconds.
    [[nodiscard]] virtual std::optional<QString> frontmostApplication() = 0;
    /// The local process of the active window; nothing when there is none or it can't be told. At most a
    /// millisecond.
    [[nodiscard]] virtual std::optional<pid_t> frontmostProcess() = 0;
    /// This program's own identifier in the same form; nothing when it has none.
    [[nodiscard]] virtual std::optional<QString> ownIdentifier() const = 0;
};

} // namespace corvandi
