#pragma once

#include "platform/accessibility_client.h"
#include "platform/focused_element.h"

namespace corvandi::testing {

/// An accessibility service that says what the test sets.
class FakeAccessibility : public AccessibilityClient, public FocusedElementReader {
public:
    bool trusted = true;
    std::optional<FocusedElement> element;
    int silentChecks = 0;
    int promptingChecks = 0;

    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override
    {
        ++(prompt == TrustPrompt::silent ? silentChecks : promptingChecks);
        return trusted;
    }
    [[nodiscard]] std::optional<FocusedElement> focusedElement() override { return element; }

    void focusTextField() { element = withRole(QStringLiteral("AXTextField")); }
    void focusPasswordField()
    {
        element = withRole(QStringLiteral("AXTextField"));
        element->subrole = QStringLiteral("AXSecureTextField");
    }

    static FocusedElement withRole(const QString& role)
    {
        FocusedElement focused;
        focused.role = role;
        return focused;
    }
};

} // namespace corvandi::testing
