#pragma once

#include "base/awaitables.h"
#include "base/locale.h"
#include "base/main_queue.h"
#include "ports/audio_buffer.h"
#include "ports/audio_converter.h"
#include "ports/speech_framework.h"
#include "ports/system_log.h"

#include <QCoroTask>
#include <QString>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// Lets coroutines pass one at a time, in the order in which they came.
///
/// Thread: main thread only. The gate must outlive everyone who waits at it.
class TurnGate {
public:
    explicit TurnGate(MainQueue& queue)
        : queue_(queue)
    {
    }

    /// Ends when it is the caller's turn, at once when nobody is inside. The caller calls `leave` at
    /// the end of its turn.
    [[nodiscard]] QCoro::Task<> enter();
    /// Lets the next one in, in a turn of the main queue of its own.
    void leave();
    [[nodiscard]] bool isOccupied() const { return occupied_; }

private:
    MainQueue& queue_;
    std::deque<OneShot<Done>> waiting_;
    bool occupied_ = false;
};

struct Transcript {
    QString text;
    /// The recognition broke off on the way; `text` is what was recognised until then.
    bool failed = false;

    friend bool operator==(const Transcript&, const Transcript&) = default;
};

/// Turns the sound of one dictation after the other into text. For each dictation: `start`, `feed`,
/// `finish`. `feed` may begin before `start`: what comes early is kept (the last 8 seconds of it) and
/// handed over first. `finish` may still be waiting for the text of one dictation when the next one
/// starts.
///
/// Thread: main thread, but for `feed`. The facilities that are passed in must outlive the service and
/// its tasks. The service may be destroyed while tasks are suspended: a start ends with an error, the
/// others complete on their own. Nobody may feed it any more by then.
class SpeechService {
public:
    /// `locale` is the language in which the user wants to dictate.
    SpeechService(SpeechFramework& framework, AudioConverterFactory& converters, MainQueue& queue,
                  SystemLog& log, Locale locale);
    ~SpeechService();
    SpeechService(const SpeechService&) = delete;
    SpeechService& operator=(const SpeechService&) = delete;

    /// The supported locale to use for `wanted`: the one with the same identifier, else the first one
    /// with the same language, else nothing.
    [[nodiscard]] static std::optional<Locale> resolveLocale(const Locale& wanted,
                                                             const std::vector<Locale>& supported);

    /// Sees to it that the speech model is on this computer, which may mean a long download. Throws
    /// `SpeechError` (unsupported locale) and whatever the framework throws.
    [[nodiscard]] QCoro::Task<> ensureModel();
    /// Begins a dictation with sound in the microphone's format, `inputFormat`. When the task ends, the
    /// engine runs and has been given all that was fed so far. Throws `SpeechError` and whatever the
    /// framework throws; a failed start is undone by `finish` or by the next start, and the sound that was
    /// kept stays kept until one of them. Ends with an `Error` when `finish`, another `start` or the
    /// destructor comes before its end.
    [[nodiscard]] QCoro::Task<> start(AudioFormat inputFormat);
    /// Takes one buffer of sound, best in the format that `start` was or will be told. The format may
    /// change on the way, as it does when the dictation goes on with another microphone.
    ///
    /// Thread: any, one at a time, also while the other operations run. Never waits for the engine;
    /// allocates the copy or the converted buffer only, and a converter for the first buffer in a format
    /// that the one before did not have. Conversion errors are logged, later and on the main thread, and
    /// cost that buffer alone; a format from which nothing leads to the engine's is logged once.
    void feed(const AudioBuffer& buffer);
    /// Ends the dictation and waits for its text. Never throws: failures are logged and told by
    /// `failed`. Without a dictation the text is empty. How long it takes is up to the engine; whoever
    /// doesn't want to wait any more calls `abandon`.
    [[nodiscard]] QCoro::Task<Transcript> finish();
    /// Tells the engine to give up every dictation that a `finish` is still waiting for, so that the next
    /// one does not queue behind it. Those tasks end soon, with the text until then, and `failed`. A
    /// dictation that has been started and not finished goes on.
    void abandon();

private:
    struct Core;

    std::shared_ptr<Core> core_;
};

} // namespace corvandi
