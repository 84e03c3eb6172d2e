#pragma once

#include "ports/audio_converter.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// Converters whose work can be followed: each output sample is the nearest one of the input's first
/// channel, so that what marks a buffer survives its conversion.
class FakeAudioConverterFactory : public AudioConverterFactory {
public:
    enum class Behaviour { passesThrough, failsWithError, givesNothing, runsOutOfMemory };

    /// Whether there is a converter at all; counts from the next `create` on.
    bool isAvailable = true;
    /// Of the converters that are created from now on, like the next one.
    Behaviour behaviour = Behaviour::passesThrough;
    /// Called in the middle of every conversion, on its thread.
    std::function<void()> whileConverting;

    struct Creation {
        AudioFormat from;
        AudioFormat to;
    };
    std::vector<Creation> creations;

    /// One call of `convert`: what it was given.
    struct Call {
        uint32_t frames = 0;
        float firstSample = 0;
        uint32_t capacity = 0;
    };
    [[nodiscard]] std::vector<Call> calls() const
    {
        const std::lock_guard guard(record_->mutex);
        return record_->calls;
    }

    [[nodiscard]] std::unique_ptr<AudioConverter> create(const AudioFormat& from,
                                                         const AudioFormat& to) override
    {
        creations.push_back({from, to});
        return isAvailable ? std::make_unique<Converter>(from, to, *this) : nullptr;
    }

private:
    struct Record {
        std::mutex mutex;
        std::vector<Call> calls;
    };

    class Converter : public AudioConverter {
    public:
        Converter(const AudioFormat& from, const AudioFormat& to, const FakeAudioConverterFactory& made)
            : from_(from)
            , to_(to)
            , behaviour_(made.behaviour)
            , hook_(made.whileConverting)
            , record_(made.record_)
        {
        }

        [[nodiscard]] Conversion convert(const AudioBuffer& buffer, uint32_t frameCapacity) override
        {
            if (hook_)
                hook_();
            {
                const std::lock_guard guard(record_->mutex);
                record_->calls.push_back(
                    {buffer.frameLength(), buffer.floatSamples().front(), frameCapacity});
            }
            if (buffer.format() != from_)
                return {{}, QStringLiteral("not the format that was agreed on")};
            return answer(resampled(buffer, frameCapacity));
        }

    private:
        [[nodiscard]] Conversion answer(AudioBuffer output) const
        {
            switch (behaviour_) {
            case Behaviour::passesThrough:
                return {std::move(output), std::nullopt};
            case Behaviour::failsWithError:
                return {{}, QStringLiteral("the resampler broke")};
            case Behaviour::givesNothing:
                return {};
            case Behaviour::runsOutOfMemory:
                throw std::bad_alloc();
            }
            return {};
        }

        [[nodiscard]] AudioBuffer resampled(const AudioBuffer& source, uint32_t capacity) const
        {
            const double step = source.format().sampleRate / to_.sampleRate;
            const auto count = std::min(capacity, static_cast<uint32_t>(source.frameLength() / step));
            std::vector<float> samples;
            for (uint32_t frame = 0; frame < count; ++frame) {
                const auto nearest = static_cast<size_t>(frame * step) * source.format().channelCount;
                samples.insert(samples.end(), to_.channelCount, source.floatSamples()[nearest]);
            }
            return {to_, std::move(samples)};
        }

        AudioFormat from_;
        AudioFormat to_;
        Behaviour behaviour_;
        std::function<void()> hook_;
        std::shared_ptr<Record> record_;
    };

    std::shared_ptr<Record> record_ = std::make_shared<Record>();
};

} // namespace corvandi::testing
