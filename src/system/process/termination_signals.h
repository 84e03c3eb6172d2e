#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace corvandi {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program ends through
/// its event loop and puts in order what it has borrowed. Ignores SIGPIPE: a closed standard error or
/// socket is no reason to die.
///
/// One instance at a time, created on the main thread before there is any other thread (threads inherit
/// the signal mask that it sets), thus before the application object. Destroying it restores the mask.
class TerminationSignals {
public:
    TerminationSignals();
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

    /// From now on calls `terminate` for each signal, also for one that has come already. Needs the
    /// application object.
    void watch(std::function<void()> terminate);

private:
    int descriptor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace corvandi
