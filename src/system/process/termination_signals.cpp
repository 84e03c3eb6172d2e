#include "system/process/termination_signals.h"

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace corvandi {
namespace {

sigset_t terminatingSignals()
{
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, signal);
    return signals;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    const sigset_t signals = terminatingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

void TerminationSignals::watch(std::function<void()> terminate)
{
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                     [descriptor = descriptor_, terminate = std::move(terminate)] {
                         signalfd_siginfo info{};
                         while (read(descriptor, &info, sizeof info) > 0)
                             terminate();
                     });
}

TerminationSignals::~TerminationSignals()
{
    notifier_.reset();
    close(descriptor_);
    const sigset_t signals = terminatingSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace corvandi
