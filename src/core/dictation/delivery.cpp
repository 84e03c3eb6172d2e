#include "core/dictation/dictation_controller.h"

#include "base/awaitables.h"
#include "core/text/post_processor.h"
#include "core/text/unicode.h"

#include <QCoreApplication>

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

QString translated(const char* text)
{
    return QCoreApplication::translate("DictationController", text);
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
    const bool rewriteWanted = co_await isRewriteWanted();
    QString text = cleaned(result->text, target, rewriteWanted);
    if (trimmedOfSpacesAndTabs(text).isEmpty()) {
        showTransient(result->failed ? translated("Transcription failed.") : translated("Didn't catch that."),
                      HUDState::error);
        co_return;
    }
    co_await waitForFreshFocus();
    const FocusTarget focus = focusInspector_.currentTarget();
    if (focus == FocusTarget::secure) {
        showTransient(translated("Dictation isn't available in password fields."), HUDState::notice);
        co_return;
    }
    if (rewriteWanted && !result->failed)
        text = co_await rewritten(text);
    if (settings_.saveHistory())
        store_.addHistory(text, platform_.wallClock.now());
    if (result->failed) {
        deliverPartialText(text);
        co_return;
    }
    co_await deliverText(text, std::move(target), focus);
}

QCoro::Task<bool> DictationController::isRewriteWanted()
{
    if (!settings_.cleanUpSentences())
        co_return false;
    // Known already, as a rule: the release has asked.
    const OneShot<Done> known;
    const auto look = platform_.languageModel.refreshAvailability([known] { known.complete({}); });
    co_await known;
    co_return !Rewriter::caption(platform_.languageModel.availability());
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
    const auto reading = platform_.focusedElements.refresh([fresh] { fresh.complete({}); });
    const auto limit = platform_.queue.after(freshFocusLimit, [fresh] { fresh.complete({}); });
    co_await fresh;
}

QCoro::Task<QString> DictationController::rewritten(QString text)
{
    showProcessing(translated("Polishing"));
    std::optional<QString> better = co_await rewriter_.rewrite(text);
    co_return better ? withValidSurrogates(*better) : text;
}

QCoro::Task<> DictationController::deliverText(QString text, Target target, FocusTarget focus)
{
    // Before the look at the frontmost application: with Alt still held the user may be about to
    // switch to another one.
    co_await waitForFreeKeys();
    if (currentTargetBundleID() != target) {
        fallBackToClipboard(text);
        co_return;
    }
    showProcessing(translated("Inserting"));
    const bool mayInsert = focus == FocusTarget::editable || (target && !injectionDenylist.contains(*target));
    if (!mayInsert) {
        fallBackToClipboard(text);
        co_return;
    }
    const bool inserted = co_await injector_.insert(text, settings_.insertion());
    if (!inserted) {
        fallBackToClipboard(text);
        co_return;
    }
    const auto elapsed = platform_.queue.now() - released_;
    platform_.log.write(QStringLiteral("text inserted %1ms after the release")
                            .arg(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count()));
    if (!isDictating_)
        hud_.hide(hideAfterInsertion);
}

QCoro::Task<> DictationController::waitForFreeKeys()
{
    // A newer dictation holds them as its hotkey, and its capture waits for this delivery.
    if (isDictating_)
        co_return;
    keysAreFree_ = OneShot<Done>();
    const OneShot<Done> free = keysAreFree_;
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

void DictationController::showTransient(const QString& message, HUDState state)
{
    platform_.log.write(message);
    if (!isDictating_)
        hud_.showTransient(message, state);
}

void DictationController::showProcessing(const QString& message)
{
    platform_.log.write(message);
    if (!isDictating_)
        hud_.showProcessing(message);
}

} // namespace corvandi
