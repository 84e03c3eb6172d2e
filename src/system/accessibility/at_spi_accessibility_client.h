#pragma once

#include "base/worker.h"
#include "ports/accessibility_client.h"
#include "ports/event_tap.h"
#include "ports/system_log.h"
#include "system/accessibility/accessibility_status.h"

#include <QProcess>
#include <QString>

#include <functional>
#include <memory>

namespace corvandi {

/// The desktop's own lasting setting "toolkit-accessibility", written through its command line tool,
/// because switching the service on holds for the session only.
///
/// Thread: main thread only. The tool is not waited for; one that is missing or fails is logged at most
/// once, one that still runs when this is destroyed is killed.
class ToolkitSetting {
public:
    explicit ToolkitSetting(SystemLog& log, QString tool = QStringLiteral("gsettings"));
    ~ToolkitSetting();
    ToolkitSetting(const ToolkitSetting&) = delete;
    ToolkitSetting& operator=(const ToolkitSetting&) = delete;

    void turnOn();

private:
    void onFailure(const QString& reason);

    SystemLog& log_;
    QString tool_;
    QProcess process_;
    bool hasLogged_ = false;
};

/// Accessibility on a desktop with AT-SPI. Trusted means that the session can watch and post keys (told at
/// construction) and that the desktop's accessibility service is switched on. The latter is cached and
/// follows the service; while it is unknown, because the service has not answered yet, is missing or hung,
/// the process is not trusted, and each call makes sure that the service has been asked.
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

    AtSpiAccessibilityClient(SystemLog& log, bool canWatchAndPostKeys, Person person,
                             QDBusConnection bus = QDBusConnection::sessionBus());

    /// With `askPerson`: asks at once when the service is known to be off or out of reach, after its
    /// answer when that is still under way. One question at a time, which the person is reminded of when
    /// it is still open; none when granting could not help
    /// (no session bus, or a session in which keys can't be watched). When granted, the service is switched
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
    bool canWatchAndPostKeys_;
    AccessibilityStatus status_;
    ToolkitSetting toolkitSetting_;
    bool promptWhenAnswered_ = false;
    bool isAskingPerson_ = false;
    Life life_;
};

/// The keyboard as something that can be tapped while the desktop's accessibility support is on: as long as
/// that is known to be off, every tap is refused. Where nobody can tell, nobody can grant it either, and
/// taps are the server's business alone.
///
/// Thread: main thread only.
class PermittedEventTapFactory : public EventTapFactory {
public:
    /// Both outlive this object.
    PermittedEventTapFactory(EventTapFactory& taps, const AtSpiAccessibilityClient& accessibility);

    [[nodiscard]] std::unique_ptr<EventTap> create(const KeyChord& chord,
                                                   EventTap::Callback callback) override;

private:
    EventTapFactory& taps_;
    const AtSpiAccessibilityClient& accessibility_;
};

} // namespace corvandi
