#pragma once

#include "base/main_queue.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// What the accessibility service tells about the element that has the keyboard focus. An attribute
/// that could not be read is absent or false.
struct FocusedElement {
    /// "AXTextField" and so on, in the names that the classification knows.
    std::optional<QString> role;
    std::optional<QString> subrole;
    bool valueSettable = false;
    bool hasSelectedTextRange = false;
    bool hasInsertionPointLineNumber = false;
    bool hasNumberOfCharacters = false;
};

/// The desktop's view of the keyboard focus.
///
/// Thread: main thread only. No call waits for another program.
class FocusedElementReader {
public:
    virtual ~FocusedElementReader() = default;

    /// The element that has the keyboard focus in the active window; nothing when it can't be told (no
    /// permission, an application that exposes nothing, one that hangs).
    [[nodiscard]] virtual std::optional<FocusedElement> focusedElement() = 0;
};

/// Follows the focus, so that its answers are what the applications have announced so far.
class FocusedElementMonitor : public FocusedElementReader {
public:
    /// Asks the active application which of its elements has the focus. `done` runs once, later, on the
    /// main thread, when its word is in the answer; also when it gave none, which may take as long as it
    /// hangs. The monitor outlives the registration.
    [[nodiscard]] virtual std::unique_ptr<Registration> refresh(std::function<void()> done) = 0;
};

} // namespace corvandi
