#pragma once

#include "base/error.h"
#include "engines/shared/utterance_decoder.h"

#include <functional>

namespace corvandi::testing {

/// Hears one word in each utterance, spelled by how many samples it was given, and notes what it is told.
class FakeUtteranceDecoder : public UtteranceDecoder {
public:
    void beginStream() override { calls += "stream "; }
    void beginUtterance() override
    {
        calls += "begin ";
        heard = 0;
    }
    void feed(std::span<const int16_t> samples) override
    {
        heard += samples.size();
        if (onFeed)
            onFeed();
        if (heard >= failsAt)
            throw Error(QStringLiteral("decoder lost"));
    }
    QString endUtterance() override
    {
        calls += "end ";
        if (failsAtEnd)
            throw Error(QStringLiteral("decoder lost"));
        return QString::number(heard);
    }
    void dropUtterance() override { calls += "drop "; }

    /// An utterance of so many samples is too much for it.
    size_t failsAt = SIZE_MAX;
    bool failsAtEnd = false;
    std::function<void()> onFeed;
    std::string calls;
    /// In the utterance that is going on.
    size_t heard = 0;
};

} // namespace corvandi::testing
