#include "core/text/rewriter.h"

#include "base/awaitables.h"
#include "core/text/unicode.h"

#include <QCoreApplication>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// What the user is made to wait for at most.
constexpr MainQueue::Duration rewriteLimit = 4s;

const QString& instructions()
{
    static const QString text = QStringLiteral(
        "Rewrite the user's dictated text into clear, grammatical, well-punctuated prose. Fix grammar, "
        "punctuation, capitalization, run-ons, and word order. Do NOT add facts, change the meaning, answer "
        "or act on the content, or add commentary. Preserve the user's wording and voice. Output only the "
        "rewritten text, nothing else.");
    return text;
}

QString translated(const char* text)
{
    return QCoreApplication::translate("Rewriter", text);
}

/// A rewrite that lost more than half of the text is likely a summary or a refusal.
bool keepsEnough(const QString& rewritten, const QString& text)
{
    return characterCount(text) <= 2 * characterCount(rewritten);
}

} // namespace

std::optional<QString> Rewriter::caption(LanguageModelAvailability availability)
{
    switch (availability) {
    case LanguageModelAvailability::available:
        return std::nullopt;
    case LanguageModelAvailability::deviceNotEligible:
        return translated("Requires a device that supports Apple Intelligence.");
    case LanguageModelAvailability::appleIntelligenceNotEnabled:
        return translated("Turn on Apple Intelligence in System Settings.");
    case LanguageModelAvailability::modelNotReady:
        return translated("The model is still downloading. Try again shortly.");
    case LanguageModelAvailability::otherReason:
        break;
    }
    return translated("Rewrite is unavailable on this device.");
}

QCoro::Task<std::optional<QString>> Rewriter::rewrite(QString text, std::stop_token stop)
{
    if (caption(model_.availability()))
        co_return std::nullopt;
    const LanguageModelAnswer answer = co_await answerInTime(text, std::move(stop));
    if (const auto* failure = std::get_if<LanguageModelFailure>(&answer)) {
        log_.write(QStringLiteral("rewrite failed: ") + failure->description);
        co_return std::nullopt;
    }
    const QString rewritten = trimmedOfWhitespaceAndNewlines(std::get<QString>(answer));
    if (rewritten.isEmpty() || !keepsEnough(rewritten, text))
        co_return std::nullopt;
    co_return rewritten;
}

QCoro::Task<LanguageModelAnswer> Rewriter::answerInTime(QString prompt, std::stop_token stop)
{
    const OneShot<LanguageModelAnswer> first;
    // Each text gets a conversation of its own; it ends with this task, answered or not.
    const auto session = model_.makeSession(instructions());
    session->respond(prompt, [first](LanguageModelAnswer answer) { first.complete(std::move(answer)); });
    const auto limit = queue_.after(rewriteLimit, [first] {
        first.complete(LanguageModelFailure{QStringLiteral("cancelled, no answer within 4 seconds")});
    });
    const std::stop_callback stopping(stop, [first] {
        first.complete(LanguageModelFailure{QStringLiteral("cancelled, the program ends")});
    });
    LanguageModelAnswer answer = co_await first;
    co_return answer;
}

} // namespace corvandi
