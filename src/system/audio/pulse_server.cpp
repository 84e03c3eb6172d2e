#include "system/audio/pulse_server.h"

#include "system/audio/pulse_connection.h"
#include "system/audio/pulse_thread.h"

#include <array>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// When to try again after a failure. A server's socket appears before it answers, and a service
/// manager that listens on its behalf may need a moment to bring it back. After the last one only a
/// change in the socket's folder or a request leads to another attempt.
constexpr std::array<MainQueue::Duration, 5> retryDelays{0ms, 50ms, 200ms, 1s, 4s};

} // namespace

PulseServer::PulseServer(MainQueue& queue, SystemLog& log)
    : queue_(queue)
    , log_(log)
    , mailbox_(queue)
    , thread_(std::make_unique<PulseThread>())
{
    attempt();
}

PulseServer::~PulseServer()
{
    thread_->runAndWait([this] { connection_.reset(); });
}

void PulseServer::connectIfNeeded()
{
    if (!isConnected_ && !isAttempting_)
        attempt();
}

void PulseServer::attempt()
{
    isAttempting_ = true;
    retry_.reset();
    thread_->post([this, number = ++attemptNumber_, address = mailbox_.address()] {
        // The old one first: two at a time would be two clients to the server.
        connection_.reset();
        const auto changed = [this, number, address](const PulseConnectionState& state) {
            address.post([this, number, state] {
                if (number == attemptNumber_)
                    connectionChanged(state);
            });
        };
        connection_ = std::make_unique<PulseConnection>(thread_->loop(), changed);
    });
}

void PulseServer::connectionChanged(const PulseConnectionState& state)
{
    switch (state.phase) {
    case PulseConnectionState::Phase::connecting:
        return;
    case PulseConnectionState::Phase::ready:
        connected(state);
        return;
    case PulseConnectionState::Phase::failed:
        disconnected(state);
        return;
    }
}

void PulseServer::connected(const PulseConnectionState& state)
{
    if (!loggedFailure_.isEmpty())
        log_.write(QStringLiteral("connected to the sound server"));
    loggedFailure_.clear();
    isConnected_ = true;
    isAttempting_ = false;
    refusesAccess_ = false;
    sourceFormat_ = state.sourceFormat;
    isSourceMuted_ = state.isSourceMuted;
    socketWatch_.reset();
}

void PulseServer::disconnected(const PulseConnectionState& state)
{
    if (isConnected_)
        log_.write(QStringLiteral("lost the sound server: ") + state.failure);
    else if (state.failure != loggedFailure_)
        log_.write(QStringLiteral("can't connect to the sound server: ") + state.failure);
    loggedFailure_ = state.failure;
    const bool wasConnected = std::exchange(isConnected_, false);
    isAttempting_ = false;
    refusesAccess_ = state.isRefused;
    sourceFormat_ = AudioFormat();
    isSourceMuted_ = false;
    if (!socketWatch_)
        socketWatch_ = std::make_unique<SocketWatch>([this] { beginRetries(); });
    if (wasConnected)
        beginRetries();
    else
        scheduleRetry();
}

void PulseServer::beginRetries()
{
    retriesMade_ = 0;
    if (!isAttempting_)
        scheduleRetry();
}

void PulseServer::scheduleRetry()
{
    if (retriesMade_ < retryDelays.size())
        retry_ = queue_.after(retryDelays.at(retriesMade_++), [this] { connectIfNeeded(); });
}

} // namespace corvandi
