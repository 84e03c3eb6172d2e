#pragma once

#include "platform/audio_buffer.h"
#include "platform/linux/audio/pulse_handles.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace corvandi {

/// A microphone as the sound server describes it.
struct SoundSource {
    std::string name;
    pa_sample_spec samples;
    pa_channel_map channels;

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
