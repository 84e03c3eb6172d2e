#include "system/audio/pulse_audio_input.h"

#include "base/error.h"
#include "system/audio/pulse_connection.h"
#include "system/audio/pulse_recording.h"
#include "system/audio/pulse_thread.h"

#include <utility>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

constexpr auto startLimit = 2s;

} // namespace

struct PulseAudioInput::Tap {
    PulseRecording::Tap value;
};

PulseAudioInput::PulseAudioInput(PulseServer& server, MainQueue& queue, SystemLog& log)
    : server_(server)
    , queue_(queue)
    , log_(log)
    , mailbox_(queue)
{
}

PulseAudioInput::~PulseAudioInput()
{
    server_.thread().runAndWait([this] { recording_.reset(); });
}

AudioFormat PulseAudioInput::inputFormat()
{
    server_.connectIfNeeded();
    return server_.sourceFormat();
}

bool PulseAudioInput::isMuted()
{
    return server_.isSourceMuted();
}

void PulseAudioInput::installTap(uint32_t frames, const AudioFormat& format, TapBlock block)
{
    tap_ = std::make_unique<Tap>(Tap{{format, frames, std::move(block)}});
}

QCoro::Task<> PulseAudioInput::removeTap()
{
    tap_.reset();
    OneShot<Done> drained;
    server_.thread().post([this, drained, address = mailbox_.address()] {
        const auto report = [drained, address] { address.post([drained] { drained.complete(Done{}); }); };
        if (recording_)
            recording_->drain(report);
        else
            report();
    });
    co_await drained;
}

void PulseAudioInput::prepare()
{
    server_.connectIfNeeded();
}

QCoro::Task<> PulseAudioInput::start(EndHandler ended)
{
    server_.connectIfNeeded();
    failStart(QStringLiteral("recording was started anew"));
    const uint64_t run = ++run_;
    ended_ = std::move(ended);
    const OneShot<Done> outcome;
    const auto timedOut = [this] {
        failStart(QStringLiteral("the microphone did not start within 2 seconds"));
        stop();
    };
    pendingStart_.emplace(PendingStart{outcome, queue_.after(startLimit, timedOut)});
    record(run);
    co_await outcome;
}

void PulseAudioInput::stop()
{
    ++run_;
    ended_ = nullptr;
    server_.thread().post([this] { recording_.reset(); });
    failStart(QStringLiteral("recording was stopped while it started"));
}

void PulseAudioInput::record(uint64_t run)
{
    const PulseRecording::Tap tap = tap_ ? tap_->value : PulseRecording::Tap{inputFormat(), 1, {}};
    server_.thread().post([this, run, tap, address = mailbox_.address()] {
        const PulseRecording::Events events{
            [this, run, address] { address.post([this, run] { recordingStarted(run); }); },
            [this, run, address](const QString& reason) {
                address.post([this, run, reason] { recordingFailed(run, reason); });
            }};
        const PulseConnection* connection = server_.connection();
        recording_.reset();
        if (connection == nullptr || connection->context() == nullptr)
            events.failed(QStringLiteral("the sound server can't be reached"));
        else if (!connection->source())
            events.failed(QStringLiteral("no audio input available"));
        else
            recording_ = std::make_unique<PulseRecording>(server_.thread().loop(), connection->context(),
                                                          *connection->source(), tap, events);
    });
}

void PulseAudioInput::recordingStarted(uint64_t run)
{
    if (run != run_ || !pendingStart_)
        return;
    const OneShot<Done> outcome = pendingStart_->outcome;
    pendingStart_.reset();
    outcome.complete(Done{});
}

void PulseAudioInput::recordingFailed(uint64_t run, const QString& reason)
{
    if (run != run_)
        return;
    // Taken out first: both may start the next run.
    const EndHandler ended = std::exchange(ended_, nullptr);
    if (pendingStart_) {
        failStart(reason);
        return;
    }
    log_.write(QStringLiteral("recording ended: ") + reason);
    if (ended)
        ended(reason);
}

void PulseAudioInput::failStart(const QString& reason)
{
    if (!pendingStart_)
        return;
    const OneShot<Done> outcome = pendingStart_->outcome;
    pendingStart_.reset();
    outcome.fail(std::make_exception_ptr(Error(reason)));
}

} // namespace corvandi
