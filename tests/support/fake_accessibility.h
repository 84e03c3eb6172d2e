#pragma once

#include "ports/accessibility_client.h"

namespace corvandi::testing {

/// An accessibility service that says what the test sets.
class FakeAccessibility : public AccessibilityClient {
public:
    bool trusted = true;
    int silentChecks = 0;
    int promptingChecks = 0;

    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override
    {
        ++(prompt == TrustPrompt::silent ? silentChecks : promptingChecks);
        return trusted;
    }
};

} // namespace corvandi::testing
