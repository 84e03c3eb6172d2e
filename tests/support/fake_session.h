#pragma once

#include "ports/capture_authorization.h"
#include "ports/workspace.h"

#include <utility>

namespace corvandi::testing {

/// A session whose frontmost application the test sets.
class FakeWorkspace : public Workspace {
public:
    std::optional<QString> frontmost = QStringLiteral("org.example.editor");
    std::optional<pid_t> process;
    std::optional<QString> own = QStringLiteral("io.corvandi.Corvandi");

    [[nodiscard]] std::optional<QString> frontmostApplication() override { return frontmost; }
    [[nodiscard]] std::optional<pid_t> frontmostProcess() override { return process; }
    [[nodiscard]] std::optional<QString> ownIdentifier() const override { return own; }
};

/// A microphone permission that the test sets.
class FakeCaptureAuthorization : public CaptureAuthorization {
public:
    AuthorizationStatus present = AuthorizationStatus::authorized;

    /// Otherwise a request waits for `answer`.
    bool answersAtOnce = true;
    int requests = 0;

    [[nodiscard]] AuthorizationStatus status() override { return present; }
    void requestAccess(std::function<void(bool granted)> answered) override
    {
        ++requests;
        pending_ = std::move(answered);
        if (answersAtOnce)
            answer(present == AuthorizationStatus::authorized);
    }
    void answer(bool granted = true)
    {
        if (const auto answered = std::exchange(pending_, nullptr))
            answered(granted);
    }

private:
    std::function<void(bool granted)> pending_;
};

} // namespace corvandi::testing
