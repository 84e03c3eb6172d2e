#pragma once

#include "ports/audio_buffer.h"

#include <QString>

#include <pulse/pulseaudio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace corvandi {

// The sound library's objects, each with one owner. Letting go of one ends what it does, and its
// callbacks are not called any more.
//
// Thread: the sound thread only.

struct PulseContextDeleter {
    void operator()(pa_context* context) const
    {
        pa_context_set_state_callback(context, nullptr, nullptr);
        pa_context_set_subscribe_callback(context, nullptr, nullptr);
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
};
using PulseContext = std::unique_ptr<pa_context, PulseContextDeleter>;

struct PulseStreamDeleter {
    void operator()(pa_stream* stream) const
    {
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_set_read_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
};
using PulseStream = std::unique_ptr<pa_stream, PulseStreamDeleter>;

struct PulseOperationDeleter {
    void operator()(pa_operation* operation) const
    {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};
using PulseOperation = std::unique_ptr<pa_operation, PulseOperationDeleter>;

struct PulsePropertiesDeleter {
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};
using PulseProperties = std::unique_ptr<pa_proplist, PulsePropertiesDeleter>;

/// Calls `expired` once, `delay` from now, unless it is destroyed before.
class PulseTimer {
public:
    using Expired = std::function<void()>;

    PulseTimer(pa_mainloop_api& loop, pa_context* context, std::chrono::microseconds delay, Expired expired)
        : loop_(loop)
        , expired_(std::move(expired))
        , event_(pa_context_rttime_new(context, pa_rtclock_now() + static_cast<pa_usec_t>(delay.count()),
                                       &PulseTimer::fire, this))
    {
    }
    ~PulseTimer()
    {
        if (event_ != nullptr)
            loop_.time_free(event_);
    }
    PulseTimer(const PulseTimer&) = delete;
    PulseTimer& operator=(const PulseTimer&) = delete;

private:
    static void fire(pa_mainloop_api*, pa_time_event*, const timeval*, void* self)
    {
        // The callback may destroy its timer.
        const Expired expired = static_cast<PulseTimer*>(self)->expired_;
        expired();
    }

    pa_mainloop_api& loop_;
    Expired expired_;
    pa_time_event* event_;
};

/// A microphone as the sound server describes it.
struct SoundSource {
    std::string name;
    pa_sample_spec samples;
    pa_channel_map channels;
    /// Also with its volume at zero.
    bool isMuted = false;

    [[nodiscard]] AudioFormat format() const
    {
        return {static_cast<double>(samples.rate), samples.channels, SampleFormat::float32};
    }
};

/// How a connection stands.
struct PulseConnectionState {
    enum class Phase { connecting, ready, failed };

    Phase phase = Phase::connecting;
    /// Whether the server sent us away.
    bool isRefused = false;
    /// Why it failed.
    QString failure;
    /// The default input device's format; sample rate 0 when there is none.
    AudioFormat sourceFormat;
    /// Whether that device is muted.
    bool isSourceMuted = false;

    friend bool operator==(const PulseConnectionState&, const PulseConnectionState&) = default;
};

/// One connection to the sound server, from the attempt to its end. It knows the default input device
/// at any time because the server tells about changes. Never starts a server.
///
/// Thread: the sound thread only; `changed` is called there, also from within the constructor, and may
/// not destroy the connection.
class PulseConnection {
public:
    using Changed = std::function<void(const PulseConnectionState&)>;

    PulseConnection(pa_mainloop_api& loop, Changed changed);

    /// The library's connection; null unless it is ready.
    [[nodiscard]] pa_context* context() const;
    /// The default input device, or nothing when there is none.
    [[nodiscard]] const std::optional<SoundSource>& source() const { return source_; }

private:
    void stateChanged();
    void fail();
    void watchSource();
    void querySource();
    void sourceQueried();
    void publish();

    Changed changed_;
    PulseContext context_;
    PulseConnectionState state_;
    PulseOperation subscription_;
    PulseOperation query_;
    bool isQueryOutdated_ = false;
    std::optional<SoundSource> queried_;
    std::optional<SoundSource> source_;
};

} // namespace corvandi
