#pragma once

#include "platform/capture_authorization.h"
#include "platform/workspace.h"

namespace corvandi::testing {

/// A session whose frontmost application the test sets.
class FakeWorkspace : public Workspace {
public:
    std::optional<QString> frontmost = QStringLiteral("org.example.editor");
    std::optional<QString> own = QStringLiteral("io.corvandi.Corvandi");

    [[nodiscard]] std::optional<QString> frontmostApplication() override { return frontmost; }
    [[nodiscard]] std::optional<QString> ownIdentifier() const override { return own; }
};

/// A microphone permission that the test sets.
class FakeCaptureAuthorization : public CaptureAuthorization {
public:
    AuthorizationStatus present = AuthorizationStatus::authorized;

    [[nodiscard]] AuthorizationStatus status() override { return present; }
    void requestAccess(std::function<void(bool granted)> answered) override
    {
        answered(present == AuthorizationStatus::authorized);
    }
};

} // namespace corvandi::testing
