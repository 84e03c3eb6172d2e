#include "core/dictation/dictation_controller.h"

#include "base/awaitables.h"
#include "base/error.h"
#include "core/speech/speech_error.h"

#include <QCoreApplication>

#include <limits>
#include <utility>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// A press that is shorter than this was not meant.
constexpr MainQueue::Duration minimumPress = 350ms;
/// How long the user is kept waiting for the final transcript.
constexpr MainQueue::Duration transcriptLimit = 5s;
/// The same when the program ends, from the moment at which it was told to. The rest of `endLimit` is for
/// what has to be done with the text.
constexpr MainQueue::Duration transcriptLimitAtEnd = 600ms;
constexpr MainQueue::Duration permissionPollInterval = 2s;

QString translated(const char* text)
{
    return QCoreApplication::translate("DictationController", text);
}

QString wholeMilliseconds(MainQueue::Duration time)
{
    return QString::number(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) +
           QLatin1String("ms");
}

QString describe(const std::exception_ptr& error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& exception) {
        return corvandi::describe(exception);
    } catch (...) {
        return QStringLiteral("unknown error");
    }
}

bool isUnsupportedLocale(const std::exception_ptr& error)
{
    try {
        std::rethrow_exception(error);
    } catch (const SpeechError& speechError) {
        return speechError.kind() == SpeechError::Kind::localeUnsupported;
    } catch (...) {
        return false;
    }
}

} // namespace

std::shared_ptr<DictationController> DictationController::create(Settings& settings, const Platform& platform)
{
    auto controller = std::make_shared<DictationController>(Private(), settings, platform);
    controller->wireCallbacks();
    return controller;
}

DictationController::DictationController(Private, Settings& settings, const Platform& platform)
    : settings_(settings)
    , platform_(platform)
    , hud_(platform.queue, platform.hudPanelFactory)
    , store_(platform.storeDirectory, platform.files, platform.storeQueue, platform.log, platform.locale)
    , speech_(platform.speechFramework, platform.audioConverterFactory, platform.queue, platform.log,
              platform.locale)
    , audio_(platform.audioInput, platform.queue)
    , focusInspector_(platform.focusedElements)
    , injector_(platform.keyboard, platform.pasteboard, platform.queue)
    , rewriter_(platform.languageModel, platform.queue, platform.log)
    , hotkey_(platform.eventTapFactory, platform.queue)
{
}

void DictationController::wireCallbacks()
{
    const Self weak = weak_from_this();
    audio_.onLevel = [weak](float level) {
        if (const auto self = weak.lock())
            self->receiveLevel(level);
    };
    audio_.onEnd = [weak](const QString&) {
        if (const auto self = weak.lock())
            self->continueCapture();
    };
    // Straight to the speech service: sound must not wait for the controller's thread.
    audio_.onBuffer = [&speech = speech_](const AudioBuffer& buffer) { speech.feed(buffer); };
    hotkey_.onStart = [weak] {
        if (const auto self = weak.lock())
            self->beginDictation();
    };
    hotkey_.onStop = [weak] {
        if (const auto self = weak.lock())
            self->endDictation();
    };
}

/// Whoever locks the session has left the keyboard, perhaps with the key still held.
void DictationController::endWhenLocked()
{
    lockWatch_ = platform_.sessionLock.onChange([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || !self->platform_.sessionLock.isLocked())
            return;
        self->hud_.hide(0s);
        self->endDictation();
    });
}

void DictationController::receiveLevel(float level)
{
    if (awaitedFirstAudio_) {
        const auto waited = platform_.queue.now() - *awaitedFirstAudio_;
        platform_.log.write(QStringLiteral("first audio %1 after the press").arg(wholeMilliseconds(waited)));
        awaitedFirstAudio_.reset();
    }
    hud_.pushLevel(level);
}

void DictationController::beginDictation()
{
    if (isDictating_ || ending_.stop_requested())
        return;
    if (platform_.sessionLock.isLocked()) {
        platform_.log.write(QStringLiteral("the session is locked; the hotkey was not heeded"));
        return;
    }
    const AuthorizationStatus microphone = platform_.captureAuthorization.status();
    if (microphone != AuthorizationStatus::notDetermined && microphone != AuthorizationStatus::authorized) {
        showTransient(translated("Enable microphone access in System Settings."), HUDState::error);
        return;
    }
    if (focusInspector_.currentTarget() == FocusTarget::secure) {
        showTransient(translated("Dictation isn't available in password fields."), HUDState::notice);
        return;
    }
    isDictating_ = true;
    soundIsLost_ = std::make_shared<bool>(false);
    targetBundleID_ = currentTargetBundleID();
    recordingStart_ = platform_.queue.now();
    hud_.showRecording();
    endWhenLocked();
    // So that it is known, and loaded, when the text is there.
    if (settings_.cleanUpSentences())
        platform_.languageModel.warmUp();
    startTask_ = std::make_shared<QCoro::Task<>>(runStart(weak_from_this(), platform_.queue, sessionTask_));
    // The hand is on the hotkey again: an insertion that waits for it to leave would wait for long. Last,
    // since that insertion goes on inside this call.
    keysAreFree_.complete({});
}

QCoro::Task<> DictationController::runStart(Self weak, MainQueue& queue, TaskHandle previousSession)
{
    // A finished task keeps its arguments for as long as its handle lives; without this each dictation
    // would keep the one before it.
    const TaskHandle previous = std::move(previousSession);
    co_await nextTurn(queue);
    if (previous)
        co_await *previous;
    const auto self = weak.lock();
    if (!self)
        co_return;
    try {
        co_await self->startTranscriber();
    } catch (const std::exception& error) {
        self->platform_.log.write(QStringLiteral("dictation could not start: ") + corvandi::describe(error));
        throw;
    }
}

QCoro::Task<> DictationController::startTranscriber()
{
    awaitedFirstAudio_ = recordingStart_;
    const AudioFormat format = co_await audio_.start();
    const MainQueue::Duration begin = platform_.queue.now();
    co_await speech_.start(format);
    modelState_ = model_state::Ready{};
    const auto elapsed = platform_.queue.now() - begin;
    platform_.log.write(QStringLiteral("speech.start ready in %1").arg(wholeMilliseconds(elapsed)));
}

/// The microphone has gone while somebody speaks: on with whichever is the default one now.
void DictationController::continueCapture()
{
    if (!isDictating_)
        return;
    // Dropped on purpose: the end of the dictation waits for capture, whose steps follow one another.
    const QCoro::Task<> continuing = runContinuation(weak_from_this());
}

QCoro::Task<> DictationController::runContinuation(Self weak)
{
    const auto self = weak.lock();
    const std::shared_ptr<bool> soundIsLost = self->soundIsLost_;
    try {
        co_await self->audio_.start();
        co_return;
    } catch (...) {
        self->platform_.log.write(QStringLiteral("the dictation can't go on with another microphone: ") +
                                  describe(std::current_exception()));
    }
    *soundIsLost = true;
    // Now, and not only when all has been said in vain.
    if (self->isDictating_ && self->soundIsLost_ == soundIsLost)
        self->hud_.showTransient(translated("Transcription incomplete."), HUDState::error);
}

void DictationController::endDictation()
{
    if (!isDictating_)
        return;
    isDictating_ = false;
    lockWatch_.reset();
    released_ = platform_.queue.now();
    const bool isTooShort = !recordingStart_ || released_ - *recordingStart_ < minimumPress;
    recordingStart_.reset();
    if (isTooShort) {
        cancelDictation(startTask_);
        return;
    }
    const Recording recording{startTask_, targetBundleID_, soundIsLost_};
    sessionTask_ = std::make_shared<QCoro::Task<>>(runSession(weak_from_this(), platform_.queue, recording));
}

QCoro::Task<> DictationController::runSession(Self weak, MainQueue& queue, Recording recording)
{
    const Recording recorded = std::move(recording);
    co_await nextTurn(queue);
    const auto self = weak.lock();
    if (!self)
        co_return;
    try {
        co_await self->finishSession(recorded);
    } catch (...) {
        // Whatever it was: the next dictation, which waits for this one, must not meet it.
        self->handleSessionFailure(std::current_exception());
    }
}

QCoro::Task<> DictationController::finishSession(Recording recording)
{
    std::exception_ptr failure;
    try {
        co_await stopCapture(recording.start);
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        handleStartFailure(failure);
        co_await discardTranscript();
        co_return;
    }
    showProcessing(translated("Transcribing"));
    std::optional<Transcript> result = co_await finishWithTimeout();
    if (result && *recording.soundIsLost)
        result->failed = true;
    co_await deliver(std::move(result), std::move(recording.target));
}

void DictationController::handleSessionFailure(const std::exception_ptr& error)
{
    platform_.log.write(QStringLiteral("the dictation broke off: ") + describe(error));
    if (undelivered_)
        saveUndelivered();
    else
        showTransient(translated("Transcription failed."), HUDState::error);
}

void DictationController::cancelDictation(TaskHandle start)
{
    hud_.hide(0s);
    sessionTask_ =
        std::make_shared<QCoro::Task<>>(runCancel(weak_from_this(), platform_.queue, std::move(start)));
}

QCoro::Task<> DictationController::runCancel(Self weak, MainQueue& queue, TaskHandle start)
{
    const TaskHandle started = std::move(start);
    co_await nextTurn(queue);
    const auto self = weak.lock();
    if (!self)
        co_return;
    try {
        co_await self->stopCapture(started);
    } catch (...) {
        // Too short to be worth a message.
    }
    co_await self->discardTranscript();
}

QCoro::Task<> DictationController::discardTranscript()
{
    // Brings the transcriber to its end, so that nothing of what was heard gets into the next dictation.
    co_await finishWithTimeout();
}

QCoro::Task<> DictationController::stopCapture(TaskHandle start)
{
    const TaskHandle started = std::move(start);
    std::exception_ptr failure;
    try {
        if (started)
            co_await *started;
    } catch (...) {
        failure = std::current_exception();
    }
    // Also when it does not run: it may be about to, with another microphone.
    co_await audio_.stop();
    if (failure)
        std::rethrow_exception(failure);
}

QCoro::Task<std::optional<Transcript>> DictationController::finishWithTimeout()
{
    const OneShot<std::optional<Transcript>> first;
    const auto finisher = [](std::shared_ptr<DictationController> self,
                             OneShot<std::optional<Transcript>> slot) -> QCoro::Task<> {
        Transcript transcript = co_await self->speech_.finish();
        slot.complete(std::move(transcript));
    };
    const QCoro::Task<> finishing = finisher(shared_from_this(), first);
    const auto limit = platform_.queue.after(transcriptLimit, [weak = weak_from_this(), first] {
        const auto self = weak.lock();
        first.complete(std::nullopt);
        // The next dictation must not queue behind this one. Whatever text that gives is dropped.
        if (self)
            self->speech_.abandon();
    });
    // At the end of the program what has been recognised until then is better than nothing.
    std::unique_ptr<Timer> limitAtEnd;
    const std::stop_callback atEnd(ending_.get_token(), [this, &limitAtEnd] {
        const MainQueue::Duration left = endingSince_ + transcriptLimitAtEnd - platform_.queue.now();
        limitAtEnd = platform_.queue.after(left, [weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->speech_.abandon();
        });
    });
    std::optional<Transcript> result = co_await first;
    co_return result;
}

void DictationController::handleStartFailure(const std::exception_ptr& error)
{
    if (std::holds_alternative<model_state::Ready>(modelState_))
        showTransient(translated("Couldn't start dictation."), HUDState::error);
    else if (std::holds_alternative<model_state::Failed>(modelState_))
        handleFailureWithoutModel(error);
    else {
        showTransient(translated("Preparing speech model…"), HUDState::error);
        prepareModel();
    }
}

void DictationController::handleFailureWithoutModel(const std::exception_ptr& error)
{
    if (isUnsupportedLocale(error)) {
        showTransient(describe(error), HUDState::error);
        return;
    }
    showTransient(translated("Speech model download failed. Check your connection."), HUDState::error);
    prepareModel();
}

void DictationController::applyHotkey()
{
    const int64_t keyCode = settings_.hotkeyKeyCode();
    if (keyCode < 0 || keyCode > std::numeric_limits<uint16_t>::max())
        qFatal("hotkeyKeyCode %lld of the preferences is out of range (0 to 65535)",
               static_cast<long long>(keyCode));
    const uint64_t flags = (settings_.hotkeyCommand() ? modifier_flags::command : 0) +
                           (settings_.hotkeyOption() ? modifier_flags::option : 0) +
                           (settings_.hotkeyShift() ? modifier_flags::shift : 0) +
                           (settings_.hotkeyControl() ? modifier_flags::control : 0);
    if (hotkey_.setChord({static_cast<uint16_t>(keyCode), flags})) {
        // One that waits for another chord to become free may get this one at once.
        if (permissionTimer_)
            activateHotkey();
        return;
    }
    // The tap watches nothing any more, not even the release of a key that is held: begin afresh, and again
    // until the platform gives the chord.
    hotkey_.stop();
    endDictation();
    noticeHotkey();
    waitForAccessibilityThenStartHotkey();
}

bool DictationController::tryStartingHotkey()
{
    if (hotkey_.isStarted())
        return true;
    if (!hotkey_.start())
        return false;
    noticeHotkey();
    return true;
}

void DictationController::noticeHotkey() const
{
    if (onHotkeyActiveChange)
        onHotkeyActiveChange();
}

void DictationController::startHotkey()
{
    if (tryStartingHotkey())
        return;
    platform_.log.write(QStringLiteral("global hotkey not active yet; waiting for Accessibility permission"));
    waitForAccessibilityThenStartHotkey();
}

void DictationController::waitForAccessibilityThenStartHotkey()
{
    permissionTimer_ = platform_.queue.every(permissionPollInterval, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (self && self->platform_.accessibility.isProcessTrusted(TrustPrompt::silent))
            self->activateHotkey();
    });
}

/// The end of the wait, if it is over.
void DictationController::activateHotkey()
{
    if (!tryStartingHotkey())
        return;
    permissionTimer_.reset();
    platform_.log.write(QStringLiteral("global hotkey activated"));
}

void DictationController::prepareModel()
{
    if (std::holds_alternative<model_state::Preparing>(modelState_))
        return;
    modelState_ = model_state::Preparing{};
    // Dropped on purpose: the task goes on by itself.
    const QCoro::Task<> preparing = runPreparation(weak_from_this(), platform_.queue);
}

QCoro::Task<> DictationController::runPreparation(Self weak, MainQueue& queue)
{
    co_await nextTurn(queue);
    const auto self = weak.lock();
    if (!self)
        co_return;
    try {
        co_await self->speech_.ensureModel();
        self->modelState_ = model_state::Ready{};
    } catch (const std::exception& error) {
        const QString description = corvandi::describe(error);
        self->platform_.log.write(QStringLiteral("speech model preparation failed: ") + description);
        self->modelState_ = model_state::Failed{description};
    }
}

std::optional<QString> DictationController::currentTargetBundleID() const
{
    std::optional<QString> frontmost = platform_.workspace.frontmostApplication();
    if (frontmost && frontmost == platform_.workspace.ownIdentifier())
        return std::nullopt;
    return frontmost;
}

QCoro::Task<> DictationController::shutDown()
{
    const auto self = shared_from_this();
    hotkey_.stop();
    permissionTimer_.reset();
    endDictation();
    hud_.hide(0s);
    endingSince_ = platform_.queue.now();
    injector_.hurry();
    ending_.request_stop();
    const OneShot<Done> over;
    const auto limit = platform_.queue.after(endLimit, [over] { over.complete({}); });
    const QCoro::Task<> ending = runEnd(self, over);
    co_await over;
    saveUndelivered();
    injector_.returnClipboard();
}

QCoro::Task<> DictationController::runEnd(std::shared_ptr<DictationController> self, OneShot<Done> over)
{
    const TaskHandle session = self->sessionTask_;
    if (session)
        co_await *session;
    co_await self->injector_.clipboardReturned();
    over.complete({});
}

} // namespace corvandi
