#pragma once

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
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

} // namespace corvandi
