#include "system/audio/pulse_recording.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace corvandi {

BlockAssembler::BlockAssembler(const AudioFormat& format, uint32_t framesPerBlock, AudioInput::TapBlock tap)
    : samplesPerBlock_(size_t{framesPerBlock} * format.channelCount)
    , tap_(std::move(tap))
    , block_(format, std::vector<float>(samplesPerBlock_))
{
}

void BlockAssembler::append(std::span<const float> samples)
{
    while (!samples.empty()) {
        const std::span<float> space = free();
        const size_t count = std::min(space.size(), samples.size());
        std::copy_n(samples.begin(), count, space.begin());
        samples = samples.subspan(count);
        advance(count);
    }
}

void BlockAssembler::appendSilence(size_t samples)
{
    while (samples > 0) {
        const std::span<float> space = free();
        const size_t count = std::min(space.size(), samples);
        std::fill_n(space.begin(), count, 0.0F);
        samples -= count;
        advance(count);
    }
}

void BlockAssembler::flush()
{
    if (filled_ > 0)
        handOver(filled_);
}

std::span<float> BlockAssembler::free()
{
    auto& samples = std::get<std::vector<float>>(block_.samples());
    return std::span(samples).subspan(filled_);
}

void BlockAssembler::advance(size_t samples)
{
    filled_ += samples;
    if (filled_ == samplesPerBlock_)
        handOver(filled_);
}

void BlockAssembler::handOver(size_t samples)
{
    // Shrinking and growing within the capacity allocates nothing.
    auto& values = std::get<std::vector<float>>(block_.samples());
    values.resize(samples);
    if (tap_)
        tap_(block_);
    values.resize(samplesPerBlock_);
    filled_ = 0;
}

namespace {

using namespace std::chrono_literals;

/// In which pieces the server sends. Two of them make a block of 2048 frames, at 44.1 kHz as well;
/// shorter ones would make it no earlier, but PipeWire would have every other program's sound go by them.
constexpr auto pieceLength = 24ms;
/// A Bluetooth headset changes its profile before it delivers anything.
constexpr std::chrono::microseconds firstSoundLimit = 4s;
/// A device that delivers nothing for so long after that has been suspended or hangs.
constexpr std::chrono::microseconds gapLimit = 1s;
/// A server that does not tell the latency in that time hangs.
constexpr std::chrono::microseconds latencyLimit = 200ms;
/// What sound may be late on its way by.
constexpr std::chrono::microseconds drainMargin = 50ms;
/// Within what the port allows for removing the tap, with room for the way to the main thread.
constexpr std::chrono::microseconds drainTimeLimit = 450ms;

std::chrono::microseconds timeSince(pa_usec_t begin)
{
    return std::chrono::microseconds(pa_rtclock_now() - begin);
}

pa_sample_spec sampleSpec(const AudioFormat& format)
{
    return {PA_SAMPLE_FLOAT32NE, static_cast<uint32_t>(format.sampleRate),
            static_cast<uint8_t>(format.channelCount)};
}

pa_buffer_attr bufferAttributes(const pa_sample_spec& samples)
{
    constexpr auto serversChoice = std::numeric_limits<uint32_t>::max();
    constexpr std::chrono::microseconds piece = pieceLength;
    const size_t bytes = pa_usec_to_bytes(static_cast<pa_usec_t>(piece.count()), &samples);
    return {serversChoice, serversChoice, serversChoice, serversChoice, static_cast<uint32_t>(bytes)};
}

QString lastError(pa_stream* stream)
{
    return QString::fromUtf8(pa_strerror(pa_context_errno(pa_stream_get_context(stream))));
}

} // namespace

PulseRecording::PulseRecording(pa_mainloop_api& loop, pa_context* context, const SoundSource& source, Tap tap,
                               Events events)
    : loop_(loop)
    , blocks_(tap.format, tap.framesPerBlock, std::move(tap.block))
    , events_(std::move(events))
{
    connect(context, source, tap.format);
}

PulseRecording::~PulseRecording()
{
    if (drained_)
        endDrain();
}

void PulseRecording::connect(pa_context* context, const SoundSource& source, const AudioFormat& format)
{
    const pa_sample_spec samples = sampleSpec(format);
    // The device's own channel order, or else the server would mix them by their default names.
    const pa_channel_map* channels =
        pa_channel_map_compatible(&source.channels, &samples) != 0 ? &source.channels : nullptr;
    stream_.reset(pa_stream_new(context, "Dictation", &samples, channels));
    if (!stream_) {
        fail(QString::fromUtf8(pa_strerror(pa_context_errno(context))));
        return;
    }
    pa_stream_set_state_callback(
        stream_.get(),
        [](pa_stream*, void* self) { static_cast<PulseRecording*>(self)->streamStateChanged(); }, this);
    pa_stream_set_read_callback(
        stream_.get(), [](pa_stream*, size_t, void* self) { static_cast<PulseRecording*>(self)->read(); },
        this);
    const pa_buffer_attr attributes = bufferAttributes(samples);
    // Not to be moved: when the microphone is unplugged, the server would go on with a sink's monitor.
    constexpr auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_record(stream_.get(), source.name.c_str(), &attributes, flags) < 0)
        fail(lastError(stream_.get()));
}

void PulseRecording::streamStateChanged()
{
    const pa_stream_state_t state = pa_stream_get_state(stream_.get());
    if (state == PA_STREAM_READY)
        begin();
    else if (!PA_STREAM_IS_GOOD(state))
        fail(state == PA_STREAM_FAILED ? lastError(stream_.get()) : QStringLiteral("the device went away"));
}

void PulseRecording::begin()
{
    isRunning_ = true;
    lastSound_ = pa_rtclock_now();
    awaitSound(gapLimit);
    events_.started();
}

void PulseRecording::read()
{
    while (isRunning_ && pa_stream_readable_size(stream_.get()) > 0) {
        const void* data = nullptr;
        size_t bytes = 0;
        if (pa_stream_peek(stream_.get(), &data, &bytes) < 0 || bytes == 0)
            break;
        take(data, bytes);
        pa_stream_drop(stream_.get());
    }
    if (hasDrained())
        endDrain();
}

void PulseRecording::take(const void* data, size_t bytes)
{
    if (std::exchange(hasSound_, true))
        longestGap_ = std::max(longestGap_, timeSince(lastSound_));
    lastSound_ = pa_rtclock_now();
    size_t samples = bytes / sizeof(float);
    if (samplesOnTheirWay_) {
        samples = std::min(samples, *samplesOnTheirWay_);
        *samplesOnTheirWay_ -= samples;
    }
    // A hole is sound that the server lost; silence in its place keeps the time.
    if (data != nullptr)
        blocks_.append({static_cast<const float*>(data), samples});
    else
        blocks_.appendSilence(samples);
}

void PulseRecording::checkForSound()
{
    const auto limit = hasSound_ ? gapLimit : firstSoundLimit;
    const auto silence = timeSince(lastSound_);
    // Never longer than a gap may be: the first sound can come meanwhile.
    if (silence < limit)
        awaitSound(std::min(gapLimit, limit - silence));
    else
        fail(QStringLiteral("the device delivers no sound"));
}

void PulseRecording::awaitSound(std::chrono::microseconds delay)
{
    watchdog_.emplace(loop_, pa_stream_get_context(stream_.get()), delay, [this] { checkForSound(); });
}

void PulseRecording::fail(const QString& reason)
{
    isRunning_ = false;
    watchdog_.reset();
    latencyQuery_.reset();
    stream_.reset();
    blocks_.flush();
    // At most once: further calls find nothing to tell.
    if (const auto failed = std::exchange(events_.failed, {}))
        failed(reason);
    if (drained_)
        endDrain();
}

void PulseRecording::drain(std::function<void()> drained)
{
    drained_ = std::move(drained);
    if (!isRunning_) {
        endDrain();
        return;
    }
    drainBegin_ = pa_rtclock_now();
    limitDrain(latencyLimit);
    latencyQuery_.reset(pa_stream_update_timing_info(
        stream_.get(),
        [](pa_stream*, int, void* self) { static_cast<PulseRecording*>(self)->measureWhatIsOnItsWay(); },
        this));
}

void PulseRecording::limitDrain(std::chrono::microseconds time)
{
    const auto left = drainTimeLimit - timeSince(drainBegin_);
    drainLimit_.emplace(loop_, pa_stream_get_context(stream_.get()), std::min(time, left),
                        [this] { endDrain(); });
}

void PulseRecording::measureWhatIsOnItsWay()
{
    pa_usec_t latency = 0;
    int isNegative = 0;
    if (pa_stream_get_latency(stream_.get(), &latency, &isNegative) < 0 || isNegative != 0)
        latency = 0;
    // PipeWire tells the latency that the last piece had when it came, PulseAudio the present one, for
    // which this is a little too much: nothing may be missing.
    const auto onItsWay = std::chrono::microseconds(latency) + timeSince(lastSound_);
    samplesOnTheirWay_ =
        pa_usec_to_bytes(static_cast<pa_usec_t>(onItsWay.count()), pa_stream_get_sample_spec(stream_.get())) /
        sizeof(float);
    // The device's sound comes in pieces: the one that is being recorded must become full first.
    if (hasDrained())
        endDrain();
    else
        limitDrain(onItsWay + longestGap_ + drainMargin);
}

bool PulseRecording::hasDrained() const
{
    return samplesOnTheirWay_ && *samplesOnTheirWay_ == 0;
}

void PulseRecording::endDrain()
{
    isRunning_ = false;
    watchdog_.reset();
    drainLimit_.reset();
    blocks_.flush();
    // Only the first end counts: nothing may follow it.
    if (const auto drained = std::exchange(drained_, {}))
        drained();
}

} // namespace corvandi
