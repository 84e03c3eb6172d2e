#pragma once

#include "ports/updater.h"

#include <QObject>

namespace corvandi {

/// The updater as the menu sees it. Observable: `canCheckForUpdatesChanged` follows every change.
///
/// Thread: main thread only. The updater outlives this object.
class UpdaterViewModel : public QObject {
    Q_OBJECT

public:
    /// Starts the updater.
    explicit UpdaterViewModel(Updater& updater);

    /// Mirrors the updater's own; the menu's item is disabled while it is false.
    [[nodiscard]] bool canCheckForUpdates() const { return canCheckForUpdates_; }
    /// What the menu's item does.
    void checkForUpdates();

Q_SIGNALS:
    void canCheckForUpdatesChanged();

private:
    void assign(bool canCheckForUpdates);

    Updater& updater_;
    bool canCheckForUpdates_ = false;
    /// Last, so that nothing is told to an object that goes.
    std::unique_ptr<Registration> observation_;
};

} // namespace corvandi
