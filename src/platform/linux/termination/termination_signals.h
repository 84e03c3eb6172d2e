#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace corvandi {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program ends through
/// its event loop and puts in order what it has borrowed. Ignores SIGPIPE: a closed standard error or
/// socket is no reason to die.
///
/// One instance at a time, created on the main thread after the application object and before any
/// other thread (threads inherit the signal mask that it sets). Destroying it restores the mask.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    int descriptor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace corvandi
