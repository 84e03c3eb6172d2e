#pragma once

#include "base/file_descriptor.h"

#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// Hands a file to xdg-open, which opens it with the application that the desktop has for it. The file
/// itself is never run.
///
/// xdg-open may come back at once or stay as long as the application; if it has not failed within
/// `patience`, the file counts as open. It is a session of its own and outlives this object and this
/// program. (One that stays longer than this object remains a zombie when it ends, until this program
/// does.)
///
/// Thread: the one that created it, which needs an event loop.
class FileOpening : public QObject {
public:
    /// Nothing, or what xdg-open complains about. Told once, later.
    using Finished = std::function<void(std::optional<QString>)>;

    FileOpening(const QString& path, std::chrono::milliseconds patience, Finished finished);

private:
    void ended();
    void finish(const std::optional<QString>& complaint);

    Finished finished_;
    pid_t process_ = 0;
    FileDescriptor processEnd_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer patience_;
};

} // namespace corvandi
