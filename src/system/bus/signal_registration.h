#pragma once

#include "base/main_queue.h"

#include <QObject>

#include <utility>

namespace corvandi {

/// Somebody's connection to a Qt signal, which ends with this object. Thread: that of the signal.
class SignalRegistration : public Registration {
public:
    explicit SignalRegistration(QMetaObject::Connection connection)
        : connection_(std::move(connection))
    {
    }
    ~SignalRegistration() override { QObject::disconnect(connection_); }
    SignalRegistration(const SignalRegistration&) = delete;
    SignalRegistration& operator=(const SignalRegistration&) = delete;

private:
    QMetaObject::Connection connection_;
};

} // namespace corvandi
