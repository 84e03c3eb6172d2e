#pragma once

#include "base/main_queue.h"
#include "ports/window_tray.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// Watches for a tray of the newer kind, with which programs register an item over the session bus.
///
/// Thread: main thread only.
class ItemTray : public QObject {
    Q_OBJECT

public:
    /// `answered` runs each time that the desktop has told whether there is such a tray: once at the
    /// start and again after changes, never inside this call. Without a session bus it never runs.
    explicit ItemTray(std::function<void(bool isThere)> answered);

    [[nodiscard]] bool isBusThere() const;
    /// An answer is on its way. One that hangs lasts until the tray goes on or ends.
    [[nodiscard]] bool isAsking() const { return answer_ && !answer_->isFinished(); }

private Q_SLOTS:
    void ask();

private:
    void takeAnswer();

    std::function<void(bool)> answered_;
    QDBusServiceWatcher service_;
    std::optional<QDBusPendingCallWatcher> answer_;
};

/// Waits until the desktop has a tray. There are two kinds: programs register an item with the first
/// over the session bus and hand a window to the second over the X server. Panels that have both may
/// offer the second a moment earlier, and a program that has decided for one stays there; so the second
/// kind counts only when the first does not follow.
///
/// Without a session bus only the second kind is looked for. A tray of the first kind that does not
/// answer is waited for as long as it takes, and blocks nothing: the toolkit, which asks the same
/// question, would wait for the answer.
///
/// Thread: main thread only.
class TrayHostWatch {
public:
    /// How long a tray of the older kind waits for the newer one.
    static constexpr std::chrono::milliseconds grace{1000};

    struct Callbacks {
        /// Runs when there is a tray, and again for each that starts later. It may destroy the watch.
        std::function<void()> found;
        /// Runs at most once, when there is no tray at the start.
        std::function<void()> notYet;
    };

    /// The callbacks run later, never inside this call.
    TrayHostWatch(MainQueue& queue, WindowTray& windowTray, Callbacks callbacks);

private:
    void itemTrayAnswered(bool isThere);
    void lookForWindowTray();
    void windowTrayAppeared();
    void reportAfter(std::chrono::milliseconds delay);

    MainQueue& queue_;
    Callbacks callbacks_;
    bool isMissReported_ = false;
    std::unique_ptr<Timer> timer_;
    WindowTray& windowTray_;
    std::unique_ptr<Registration> windowTrayWatch_;
    ItemTray itemTray_;
};

} // namespace corvandi
