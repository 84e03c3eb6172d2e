#pragma once

#include <QString>

#include <optional>

namespace corvandi {

enum class TrustPrompt { silent, askPerson };

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

/// The desktop's accessibility service.
///
/// Thread: main thread only. No call waits for another program.
class AccessibilityClient {
public:
    virtual ~AccessibilityClient() = default;

    /// Whether this process may watch the keyboard, post keys and inspect the focus. With `askPerson`
    /// a person who has not granted that yet is asked, and the answer of this call is still the present
    /// state.
    [[nodiscard]] virtual bool isProcessTrusted(TrustPrompt prompt) = 0;

    /// The element that has the keyboard focus in the active window; nothing when it can't be told (no
    /// permission, an application that exposes nothing, one that hangs).
    [[nodiscard]] virtual std::optional<FocusedElement> focusedElement() = 0;
};

} // namespace corvandi
