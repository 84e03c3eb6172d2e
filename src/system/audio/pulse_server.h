#pragma once

#include "base/worker.h"
#include "ports/audio_buffer.h"
#include "ports/system_log.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace corvandi {

class PulseConnection;
struct PulseConnectionState;
class PulseThread;
class SocketWatch;

/// The desktop's sound server, over one connection that is kept as long as the program runs, so that
/// nothing need be set up when a key is pressed.
///
/// When there is no server, or it goes away, that is logged once; a few attempts follow at once, and
/// again whenever something appears in the folder of the server's socket or somebody asks for a
/// connection. No timer runs while nothing changes. A server that hangs is waited for without end;
/// whoever wants something of it sets his own limit.
///
/// Thread: main thread only. No call waits, except the destructor for the sound thread's end.
class PulseServer {
public:
    PulseServer(MainQueue& queue, SystemLog& log);
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// Whether the server answers.
    [[nodiscard]] bool isConnected() const { return isConnected_; }
    /// Whether the server is there but refuses this program.
    [[nodiscard]] bool refusesAccess() const { return refusesAccess_; }
    /// The default input device's own format; a sample rate of 0 when there is no input device or no
    /// server. A sink's monitor is not an input device.
    [[nodiscard]] const AudioFormat& sourceFormat() const { return sourceFormat_; }
    /// Whether that device is muted, or its volume zero.
    [[nodiscard]] bool isSourceMuted() const { return isSourceMuted_; }
    /// Makes an attempt to connect, unless there is a connection or an attempt under way.
    void connectIfNeeded();

    /// The thread on which `connection` may be used.
    [[nodiscard]] PulseThread& thread() { return *thread_; }
    /// The present connection, ready or not; may be null. Sound thread only.
    [[nodiscard]] PulseConnection* connection() const { return connection_.get(); }

private:
    void attempt();
    void connectionChanged(const PulseConnectionState& state);
    void connected(const PulseConnectionState& state);
    void disconnected(const PulseConnectionState& state);
    void beginRetries();
    void scheduleRetry();

    MainQueue& queue_;
    SystemLog& log_;
    bool isConnected_ = false;
    bool isAttempting_ = false;
    bool refusesAccess_ = false;
    AudioFormat sourceFormat_;
    bool isSourceMuted_ = false;
    QString loggedFailure_;
    /// Which attempt's reports count.
    uint64_t attemptNumber_ = 0;
    size_t retriesMade_ = 0;
    std::unique_ptr<Timer> retry_;
    std::unique_ptr<SocketWatch> socketWatch_;
    Mailbox mailbox_;
    std::unique_ptr<PulseThread> thread_;
    /// Belongs to the sound thread.
    std::unique_ptr<PulseConnection> connection_;
};

} // namespace corvandi
