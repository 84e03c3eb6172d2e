#include "core/dictation/dictation_controller.h"

#include "base/awaitables.h"
#include "core/text/post_processor.h"
#include "core/text/unicode.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// How long the HUD stays after the text is in.
constexpr MainQueue::Duration hideAfterInsertion = 150ms;
/// How long a delivery waits for the application to say where the focus is now. Most do within a
/// millisecond or two; one that hangs is taken at its last word.
constexpr MainQueue::Duration freshFocusLimit = 50ms;
/// How long an insertion waits for fingers that still hold a modifier.
constexpr MainQueue::Duration freeKeysLimit = 2s;
/// How long the typing of a text may keep the program from its end.
constexpr MainQueue::Duration typingAtEndLimit = 300ms;

QString translated(const char* text)
{
    return QCoreApplication::translate("DictationController", text);
}

/// Whoever makes several times as many characters of a text has not rewritten it, but answered it or gone
/// astray.
bool isAnswerTooLong(const QString& answer, const QString& text)
{
    constexpr qsizetype mostGrowth = 3;
    /// A few words may well become a sentence.
    constexpr qsizetype alwaysAllowed = 40;
    return characterCount(answer) > std::max(alwaysAllowed, mostGrowth * characterCount(text));
}

/// In a terminal each line break runs a command: where nobody dictated one there is none.
QString withoutNewLineBreaks(const QString& answer, const QString& text)
{
    static const QRegularExpression lineBreaks(
        QStringLiteral("\\s*[\\n\\r\\v\\f\\x{85}\\x{2028}\\x{2029}]\\s*"),
        QRegularExpression::UseUnicodePropertiesOption);
    if (text.contains(lineBreaks))
        return answer;
    QString oneLine = answer;
    return oneLine.replace(lineBreaks, QStringLiteral(" "));
}

} // namespace

// The rules of the dictation, and what it says, are written in one platform's words (its file manager, its
// "⌘V"); adapters of other platforms translate theirs into these.
const std::set<QString> DictationController::injectionDenylist{QStringLiteral("com.apple.finder")};

QCoro::Task<> DictationController::deliver(std::optional<Transcript> result, Target target)
{
    if (!result) {
        showTransient(translated("Transcription timed out."), HUDState::error);
        co_return;
    }
    undelivered_ = result->text;
    isUndeliveredInHistory_ = false;
    co_await deliverTranscript(*result, std::move(target));
    undelivered_.reset();
}

QCoro::Task<> DictationController::deliverTranscript(Transcript transcript, Target target)
{
    const bool rewriteWanted = isRewriteWanted();
    QString text = cleaned(transcript.text, target, rewriteWanted);
    if (trimmedOfSpacesAndTabs(text).isEmpty()) {
        showTransient(wordsForNothing(transcript), HUDState::error);
        co_return;
    }
    undelivered_ = text;
    co_await waitForFreshFocus();
    FocusTarget focus = focusInspector_.currentTarget();
    if (focus == FocusTarget::secure) {
        showTransient(translated("Dictation isn't available in password fields."), HUDState::notice);
        co_return;
    }
    if (rewriteWanted && !transcript.failed) {
        text = co_await rewritten(text);
        undelivered_ = text;
        // That has taken its time, in which the focus may have moved.
        co_await waitForFreshFocus();
        focus = focusInspector_.currentTarget();
    }
    keepInHistory(text);
    if (transcript.failed)
        deliverPartialText(text);
    else
        co_await deliverText(text, std::move(target), focus);
}

QString DictationController::wordsForNothing(const Transcript& transcript) const
{
    if (transcript.failed)
        return translated("Transcription failed.");
    return audio_.isInputMuted() ? translated("Didn't catch that. The microphone is muted.")
                                 : translated("Didn't catch that.");
}

/// A model that is still looked at, or loaded, is not waited for: it serves the next dictation.
bool DictationController::isRewriteWanted()
{
    return settings_.cleanUpSentences() && !ending_.stop_requested() &&
           !Rewriter::caption(platform_.languageModel.availability());
}

QString DictationController::cleaned(const QString& transcript, const Target& target, bool rewriteWanted)
{
    const std::vector<VocabRule> rules = store_.vocabBook().effectiveVocab(target);
    const QString trimmed = trimmedOfWhitespaceAndNewlines(transcript);
    const QString replaced = vocabReplacer_.apply(rules, trimmed);
    // What is rewritten keeps its punctuation: it tells the model where the sentences are.
    const PostProcessor::Options options{.removeDisfluencies = settings_.removeDisfluencies(),
                                         .keepPunctuation = rewriteWanted || settings_.autoPunctuation()};
    return PostProcessor::process(replaced, options);
}

/// Who moves into a password field while the transcript is on its way must not get it typed there because
/// the application has not announced the move yet.
QCoro::Task<> DictationController::waitForFreshFocus()
{
    const OneShot<Done> fresh;
    const std::stop_callback atEnd(ending_.get_token(), [fresh] { fresh.complete({}); });
    const auto reading = platform_.focusedElements.refresh([fresh] { fresh.complete({}); });
    const auto limit = platform_.queue.after(freshFocusLimit, [fresh] { fresh.complete({}); });
    co_await fresh;
}

QCoro::Task<QString> DictationController::rewritten(QString text)
{
    showProcessing(translated("Polishing"));
    std::optional<QString> better = co_await rewriter_.rewrite(text, ending_.get_token());
    if (!better)
        co_return text;
    const QString kept = withoutNewLineBreaks(withValidSurrogates(*better), text);
    co_return isAnswerTooLong(kept, text) ? text : kept;
}

QCoro::Task<> DictationController::deliverText(QString text, Target target, FocusTarget focus)
{
    // Before the look at the frontmost application: with Alt still held the user may be about to
    // switch to another one.
    co_await waitForFreeKeys();
    if (ending_.stop_requested() || isSwitching() || currentTargetBundleID() != target) {
        fallBackToClipboard(text);
        co_return;
    }
    showProcessing(translated("Inserting"));
    const bool mayInsert = focus == FocusTarget::editable || (target && !injectionDenylist.contains(*target));
    if (!mayInsert) {
        fallBackToClipboard(text);
        co_return;
    }
    co_await insert(std::move(text), std::move(target));
}

/// Alt or Super that stay down hold a desktop's switcher open: letting them go commits the switch, also in
/// the middle of a text. For a newer dictation they are the hotkey.
bool DictationController::isSwitching() const
{
    return !isDictating_ && platform_.keyboard.isAnyHeld(modifier_flags::option | modifier_flags::command);
}

QCoro::Task<> DictationController::insert(QString text, Target target)
{
    const PostingGate gate = [this, target] { return mayPost(target); };
    const Insertion insertion = co_await injector_.insert(text, settings_.insertion(), gate);
    if (insertion.outcome != Insertion::Outcome::inserted) {
        undelivered_ = insertion.rest;
        fallBackToClipboard(insertion.rest);
        co_return;
    }
    const auto elapsed = platform_.queue.now() - released_;
    platform_.log.write(QStringLiteral("text inserted %1ms after the release")
                            .arg(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count()));
    if (maySpeak())
        hud_.hide(hideAfterInsertion);
}

/// Keys go to whatever has the focus at that moment, and the user's hands don't rest meanwhile.
bool DictationController::mayPost(const Target& target) const
{
    // A long text whose typing the end of the program has met.
    if (ending_.stop_requested() && platform_.queue.now() - endingSince_ > typingAtEndLimit)
        return false;
    return !platform_.sessionLock.isLocked() && currentTargetBundleID() == target &&
           focusInspector_.currentTarget() != FocusTarget::secure;
}

void DictationController::keepInHistory(const QString& text)
{
    if (settings_.saveHistory() && !std::exchange(isUndeliveredInHistory_, true))
        store_.addHistory(text, platform_.wallClock.now());
}

/// What is left to do for a text when its delivery can't go on.
void DictationController::saveUndelivered()
{
    const std::optional<QString> text = std::exchange(undelivered_, std::nullopt);
    if (!text || trimmedOfSpacesAndTabs(*text).isEmpty())
        return;
    keepInHistory(*text);
    fallBackToClipboard(*text);
}

QCoro::Task<> DictationController::waitForFreeKeys()
{
    // A newer dictation holds them as its hotkey, and its capture waits for this delivery.
    if (isDictating_)
        co_return;
    keysAreFree_ = OneShot<Done>();
    const OneShot<Done> free = keysAreFree_;
    const std::stop_callback atEnd(ending_.get_token(), [free] { free.complete({}); });
    const auto registration = platform_.keyboard.whenKeysAreFree([free] { free.complete({}); });
    const auto limit = platform_.queue.after(freeKeysLimit, [free] { free.complete({}); });
    co_await free;
}

void DictationController::deliverPartialText(const QString& text)
{
    const bool copied = copyConcealed(text);
    showTransient(
        copied
            ? translated("Transcription incomplete. Partial text copied to the clipboard; press ⌘V to paste.")
            : translated("Transcription incomplete."),
        HUDState::error);
}

bool DictationController::copyConcealed(const QString& text)
{
    platform_.pasteboard.clearContents();
    const bool copied = platform_.pasteboard.setString(text, pasteboard_type::string);
    platform_.pasteboard.setString(QString(), pasteboard_type::concealed);
    return copied;
}

void DictationController::fallBackToClipboard(const QString& text)
{
    if (copyConcealed(text))
        showTransient(translated("Saved to the clipboard. Press ⌘V to paste."), HUDState::notice);
    else if (settings_.saveHistory())
        showTransient(translated("Couldn't copy to the clipboard (saved to history)."), HUDState::error);
    else
        showTransient(translated("Couldn't copy to the clipboard."), HUDState::error);
}

/// A newer dictation has the HUD. On a locked screen, and at the end of the program, it is nobody's: it
/// leaves.
bool DictationController::maySpeak()
{
    if (isDictating_)
        return false;
    if (!ending_.stop_requested() && !platform_.sessionLock.isLocked())
        return true;
    hud_.hide(0s);
    return false;
}

void DictationController::showTransient(const QString& message, HUDState state)
{
    platform_.log.write(message);
    if (maySpeak())
        hud_.showTransient(message, state);
}

void DictationController::showProcessing(const QString& message)
{
    platform_.log.write(message);
    if (maySpeak())
        hud_.showProcessing(message);
}

} // namespace corvandi
