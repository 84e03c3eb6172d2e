#pragma once

#include "base/system_log.h"
#include "platform/accessibility_client.h"
#include "platform/linux/accessibility/accessibility_status.h"
#include "platform/linux/accessibility/toolkit_setting.h"

#include <functional>
#include <memory>

namespace corvandi {

/// Accessibility on an X11 desktop with AT-SPI. Trusted means that the X server has what watching and
/// posting keys needs (found out once, at construction) and that the desktop's accessibility service is
/// switched on. The latter is cached and follows the service; while it is unknown, because the service
/// has not answered yet, is missing or hung, the process is not trusted, and each call makes sure that
/// the service has been asked.
///
/// Thread: main thread only. Asking the service never waits for it; a bus given as the session's should
/// have been connected before, as the application object does.
class AtSpiAccessibilityClient : public AccessibilityClient {
public:
    using Answer = std::function<void(bool granted)>;
    /// The way to the person.
    struct Person {
        /// Asks whether accessibility may be switched on. Must return at once and call the answer later;
        /// calling it more than once, or when the client has gone, does nothing.
        std::function<void(Answer)> ask;
        /// The question that is open is wanted again: it may be hidden behind something.
        std::function<void()> remind;
    };

    AtSpiAccessibilityClient(SystemLog& log, Person person,
                             QDBusConnection bus = QDBusConnection::sessionBus());

    /// With `askPerson`: asks at once when the service is known to be off or out of reach, after its
    /// answer when that is still under way. One question at a time, which the person is reminded of when
    /// it is still open; none when granting could not help
    /// (no session bus, or an X server without the extensions). When granted, the service is switched
    /// on, and the desktop's own setting with it.
    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override;
    /// The service has said that it is switched off; false while it has said nothing.
    [[nodiscard]] bool isSwitchedOff() const;
    /// Calls back once, later, when the service has answered a question that is under way or has been given
    /// up, which takes five seconds at most; at once when no question is under way.
    void whenAnswered(std::function<void()> callback);

private:
    [[nodiscard]] bool isTrusted() const;
    void prompt();
    void ask();
    void onAnswer(bool granted);

    Person person_;
    bool hasInputExtensions_;
    AccessibilityStatus status_;
    ToolkitSetting toolkitSetting_;
    bool promptWhenAnswered_ = false;
    bool isAskingPerson_ = false;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace corvandi
