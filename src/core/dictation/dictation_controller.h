#pragma once

#include "base/awaitables.h"
#include "core/data/settings.h"
#include "core/data/store.h"
#include "core/dictation/platform.h"
#include "core/hotkey/hotkey_manager.h"
#include "core/hud/hud_controller.h"
#include "core/insertion/focus_inspector.h"
#include "core/insertion/text_injector.h"
#include "core/speech/audio_engine.h"
#include "core/speech/speech_service.h"
#include "core/text/rewriter.h"
#include "core/text/vocab_replacer.h"

#include <QCoroTask>
#include <QString>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <variant>

namespace corvandi {

/// Readiness of the speech model.
namespace model_state {
/// The last preparation failed; `message` is its error's description.
struct Failed {
    QString message;
    friend bool operator==(const Failed&, const Failed&) = default;
};
/// Nothing has been attempted yet.
struct Pending {
    friend bool operator==(const Pending&, const Pending&) = default;
};
/// A preparation is running.
struct Preparing {
    friend bool operator==(const Preparing&, const Preparing&) = default;
};
/// The model is installed, or the transcriber has started at least once.
struct Ready {
    friend bool operator==(const Ready&, const Ready&) = default;
};
} // namespace model_state

using ModelState =
    std::variant<model_state::Failed, model_state::Pending, model_state::Preparing, model_state::Ready>;

/// The spine of the program: owns everything that a dictation needs and drives it from the press of the
/// hotkey to the text in the application.
///
/// A press starts capture and transcriber; the release ends them and hands the transcript to delivery.
/// A new press is accepted as soon as the key is released; its capture begins only when the previous
/// dictation has been delivered, and from its press on the previous one no longer speaks to the user
/// (what it does for the user goes on).
///
/// Thread: main thread only. Its tasks hold it weakly while they wait for each other, and end silently
/// when it is gone.
class DictationController : public std::enable_shared_from_this<DictationController> {
    struct Private {
        explicit Private() = default;
    };

public:
    /// Applications into which nothing is inserted unless an editable element has the focus there.
    static const std::set<QString> injectionDenylist;

    /// Both referees outlive the controller.
    [[nodiscard]] static std::shared_ptr<DictationController> create(Settings& settings,
                                                                     const Platform& platform);
    DictationController(Private key, Settings& settings, const Platform& platform);

    /// The press handler.
    void beginDictation();
    /// The release handler. What remains to be done runs in the session task.
    void endDictation();
    /// Copies the hotkey from the settings. A key code outside 0...65535 stops the process: no user
    /// interface can store it.
    void applyHotkey();
    /// Starts the hotkey; when the platform refuses, waits for the permission that it needs.
    void startHotkey();
    /// Makes sure that the speech model is being prepared or has been.
    void prepareModel();
    /// Checks every two seconds whether the process is trusted, without asking anybody, and then starts
    /// the hotkey.
    void waitForAccessibilityThenStartHotkey();
    /// Brings everything to its end before the program ends. A key that is held counts as released now; a
    /// transcript that is being made is waited for, a rewrite is given up, and a text that is not on its way
    /// into the application yet goes into the history (if it is kept) and onto the clipboard. What a
    /// dictation has borrowed is given back. Ends within `endLimit`, whatever hangs. To be called once; no
    /// press is accepted after it.
    [[nodiscard]] QCoro::Task<> shutDown();

    static constexpr MainQueue::Duration endLimit = std::chrono::milliseconds(700);

    /// Runs when `isHotkeyActive` has changed.
    std::function<void()> onHotkeyActiveChange;
    /// Whether the hotkey is being watched.
    [[nodiscard]] bool isHotkeyActive() const { return hotkey_.isStarted(); }
    [[nodiscard]] const ModelState& modelState() const { return modelState_; }
    [[nodiscard]] bool isDictating() const { return isDictating_; }
    [[nodiscard]] HUDController& hud() { return hud_; }
    /// The history and the vocabulary. Lives as long as the controller.
    [[nodiscard]] Store& store() { return store_; }
    /// The frontmost application; nothing when there is none or when it is this program.
    [[nodiscard]] std::optional<QString> currentTargetBundleID() const;

private:
    using Self = std::weak_ptr<DictationController>;
    using TaskHandle = std::shared_ptr<QCoro::Task<>>;
    using Target = std::optional<QString>;
    /// What its session needs to know of a press.
    struct Recording {
        TaskHandle start;
        Target target;
        /// The microphone went, and there was no other one.
        std::shared_ptr<const bool> soundIsLost;
    };

    // Press and release.
    void wireCallbacks();
    [[nodiscard]] bool tryStartingHotkey();
    void activateHotkey();
    void noticeHotkey() const;
    void receiveLevel(float level);
    void endWhenLocked();
    void continueCapture();
    void cancelDictation(TaskHandle start);
    static QCoro::Task<> runStart(Self weak, MainQueue& queue, TaskHandle previousSession);
    static QCoro::Task<> runSession(Self weak, MainQueue& queue, Recording recording);
    static QCoro::Task<> runContinuation(Self weak);
    static QCoro::Task<> runCancel(Self weak, MainQueue& queue, TaskHandle start);
    static QCoro::Task<> runPreparation(Self weak, MainQueue& queue);
    static QCoro::Task<> runEnd(std::shared_ptr<DictationController> self, OneShot<Done> over);
    [[nodiscard]] QCoro::Task<> finishSession(Recording recording);
    [[nodiscard]] QCoro::Task<> startTranscriber();
    [[nodiscard]] QCoro::Task<> stopCapture(TaskHandle start);
    [[nodiscard]] QCoro::Task<std::optional<Transcript>> finishWithTimeout();
    [[nodiscard]] QCoro::Task<> discardTranscript();
    void handleStartFailure(const std::exception_ptr& error);
    void handleFailureWithoutModel(const std::exception_ptr& error);
    void handleSessionFailure(const std::exception_ptr& error);

    // Delivery.
    [[nodiscard]] QCoro::Task<> deliver(std::optional<Transcript> result, Target target);
    [[nodiscard]] QCoro::Task<> deliverTranscript(Transcript transcript, Target target);
    [[nodiscard]] QString wordsForNothing(const Transcript& transcript) const;
    [[nodiscard]] bool isRewriteWanted();
    [[nodiscard]] QString cleaned(const QString& transcript, const Target& target, bool rewriteWanted);
    [[nodiscard]] QCoro::Task<> waitForFreshFocus();
    [[nodiscard]] QCoro::Task<QString> rewritten(QString text);
    [[nodiscard]] QCoro::Task<> deliverText(QString text, Target target, FocusTarget focus);
    [[nodiscard]] QCoro::Task<> insert(QString text, Target target);
    [[nodiscard]] QCoro::Task<> waitForFreeKeys();
    [[nodiscard]] bool isSwitching() const;
    [[nodiscard]] bool mayPost(const Target& target) const;
    void keepInHistory(const QString& text);
    void deliverPartialText(const QString& text);
    void fallBackToClipboard(const QString& text);
    void saveUndelivered();
    [[nodiscard]] bool copyConcealed(const QString& text);
    [[nodiscard]] bool maySpeak();
    void showTransient(const QString& message, HUDState state);
    void showProcessing(const QString& message);

    Settings& settings_;
    Platform platform_;
    HUDController hud_;
    Store store_;
    VocabReplacer vocabReplacer_;
    SpeechService speech_;
    /// After the service, so that nothing feeds it any more when it goes.
    AudioEngine audio_;
    FocusInspector focusInspector_;
    TextInjector injector_;
    Rewriter rewriter_;
    HotKeyManager hotkey_;
    ModelState modelState_ = model_state::Pending{};
    bool isDictating_ = false;
    TaskHandle startTask_;
    TaskHandle sessionTask_;
    std::unique_ptr<Timer> permissionTimer_;
    std::optional<MainQueue::Duration> recordingStart_;
    /// Completed when an insertion need not wait for the modifiers any more.
    OneShot<Done> keysAreFree_;
    Target targetBundleID_;
    std::shared_ptr<bool> soundIsLost_;
    /// While the key is held.
    std::unique_ptr<Registration> lockWatch_;
    /// The text that the present delivery has to put somewhere, in the best form that is known.
    std::optional<QString> undelivered_;
    bool isUndeliveredInHistory_ = false;
    /// Asked to stop when the program ends. Every wait of a session ends with it, but those for the recording
    /// and its transcript, which the end of the program waits for itself.
    std::stop_source ending_;
    MainQueue::Duration endingSince_{};
    /// When the present press happened, until the log has its first sound.
    std::optional<MainQueue::Duration> awaitedFirstAudio_;
    MainQueue::Duration released_{};
};

} // namespace corvandi
