#pragma once

namespace corvandi {

enum class TrustPrompt { silent, askPerson };

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
};

} // namespace corvandi
