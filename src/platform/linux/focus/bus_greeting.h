#pragma once

#include <QLocalSocket>
#include <QObject>
#include <QString>

namespace corvandi {

/// Knocks at a bus and waits until it answers. Connecting to one that hangs would keep all other buses of
/// this process waiting together with it, for as long as it hangs.
///
/// Thread: a worker thread; nothing here waits. Destroying it ends the waiting.
class BusGreeting : public QObject {
    Q_OBJECT

public:
    /// `address` is in the form in which buses tell their addresses. Ends in `answered` or `failed`, or
    /// in none of them while the bus hangs; both come later, never from inside the constructor.
    explicit BusGreeting(QString address);

Q_SIGNALS:
    void answered(const QString& address);
    /// `reason` is for the log.
    void failed(const QString& reason);

private:
    void knock();

    QString address_;
    QLocalSocket socket_;
};

} // namespace corvandi
