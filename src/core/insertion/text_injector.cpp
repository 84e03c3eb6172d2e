#include "core/insertion/text_injector.h"

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

/// What one keyboard event carries at most.
constexpr size_t unitsPerEvent = 20;

constexpr bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

} // namespace

std::vector<std::u16string> typingChunks(std::u16string_view units)
{
    std::vector<std::u16string> chunks;
    while (!units.empty()) {
        size_t length = std::min(unitsPerEvent, units.size());
        if (length < units.size() && length > 1 && isHighSurrogate(units[length - 1]))
            --length;
        chunks.emplace_back(units.substr(0, length));
        units.remove_prefix(length);
    }
    return chunks;
}

namespace {

using namespace std::chrono_literals;

/// Time for the target to fetch the pasted text before the clipboard is given back.
constexpr MainQueue::Duration restoreDelay = 1s;

/// A timer that is due at once: work that is put onto the queue by itself may run before anything that comes
/// from outside, a timer lets that have its turn.
constexpr MainQueue::Duration turnForOtherWork = 0s;

/// Posts key-down and key-up, changed by `prepare`; false, and nothing posted, when the source can't
/// make them.
template<class Prepare>
bool postKeyPair(KeyEventSource& source, uint16_t virtualKey, Prepare prepare)
{
    auto down = source.makeKeyEvent(virtualKey, KeyDirection::down);
    auto up = source.makeKeyEvent(virtualKey, KeyDirection::up);
    if (!down || !up)
        return false;
    prepare(*down);
    prepare(*up);
    source.post(*down);
    source.post(*up);
    return true;
}

} // namespace

TextInjector::TextInjector(Keyboard& keyboard, Pasteboard& pasteboard, MainQueue& queue)
    : keyboard_(keyboard)
    , pasteboard_(pasteboard)
    , queue_(queue)
{
}

QCoro::Task<Insertion> TextInjector::insert(QString text, InsertionMethod method, PostingGate mayPost)
{
    Insertion result{Insertion::Outcome::failed, text};
    if (text.isEmpty())
        co_return result;
    const bool typesFirst = method == InsertionMethod::type;
    for (const bool types : {typesFirst, !typesFirst}) {
        QCoro::Task<std::optional<Insertion>> attempt = types ? type(text, mayPost) : paste(text, mayPost);
        const std::optional<Insertion> done = co_await attempt;
        if (done) {
            result = *done;
            break;
        }
    }
    co_return result;
}

QCoro::Task<std::optional<Insertion>> TextInjector::type(QString text, PostingGate mayPost)
{
    const auto source = keyboard_.createSource(text);
    if (!source)
        co_return std::nullopt;
    const std::vector<std::u16string> chunks = typingChunks(text.toStdU16String());
    qsizetype posted = 0;
    for (const std::u16string& chunk : chunks) {
        if (posted > 0 && !isHurried_)
            co_await sleepFor(queue_, turnForOtherWork);
        if (!mayPost()) {
            const Insertion stopped{Insertion::Outcome::stopped, text.mid(posted)};
            co_return stopped;
        }
        if (!postKeyPair(*source, virtual_key::none, [&](SyntheticKeyEvent& event) { event.text = chunk; }))
            co_return std::nullopt;
        posted += static_cast<qsizetype>(chunk.size());
    }
    const Insertion inserted{Insertion::Outcome::inserted, {}};
    co_return inserted;
}

bool TextInjector::postCommandV()
{
    const auto source = keyboard_.createSource(QString());
    return source && postKeyPair(*source, virtual_key::v,
                                 [](SyntheticKeyEvent& event) { event.flags = modifier_flags::command; });
}

QCoro::Task<std::optional<Insertion>> TextInjector::paste(QString text, PostingGate mayPost)
{
    std::optional<Content> previous = co_await contentToRestore();
    if (!mayPost()) {
        const Insertion stopped{Insertion::Outcome::stopped, text};
        co_return stopped;
    }
    restoreTimer_.reset();
    const std::optional<Loan> last = std::exchange(loan_, std::nullopt);
    pasteboard_.clearContents();
    const bool set = pasteboard_.setString(text, pasteboard_type::string);
    pasteboard_.setString(QString(), pasteboard_type::concealed);
    const int64_t changeCount = pasteboard_.changeCount();
    const bool isPosted = set && postCommandV();
    if (isPosted) {
        loan_ = Loan{std::move(previous), text, changeCount, {}};
        restoreTimer_ = queue_.after(restoreDelay, [this] { const QCoro::Task<> ending = endLoan(); });
    }
    if (last)
        last->returned.complete({});
    if (!isPosted)
        co_return std::nullopt;
    const Insertion inserted{Insertion::Outcome::inserted, {}};
    co_return inserted;
}

QCoro::Task<std::optional<TextInjector::Content>> TextInjector::contentToRestore()
{
    // Between a paste and its restore the clipboard holds that dictation; what the user had there
    // before must not be lost to a second paste within the second.
    if (loan_ && loan_->changeCount == pasteboard_.changeCount()) {
        std::optional<Content> lent = loan_->content;
        co_return lent;
    }
    const std::optional<QString> text = co_await pasteboard_.string();
    if (!text)
        co_return std::nullopt;
    if (loan_ && loan_->text == *text) {
        // A clipboard manager has taken it over.
        std::optional<Content> lent = loan_->content;
        co_return lent;
    }
    const bool isConcealed = co_await pasteboard_.isConcealed();
    Content content{*text, isConcealed};
    co_return content;
}

/// The second is over. A clipboard manager that has taken the dictated text over meanwhile is not a user who
/// has copied something else.
QCoro::Task<> TextInjector::endLoan()
{
    const int64_t present = pasteboard_.changeCount();
    const int64_t lent = loan_->changeCount;
    if (present != lent) {
        const auto life = life_.watch();
        const std::optional<QString> text = co_await pasteboard_.string();
        if (life.expired() || !loan_ || loan_->changeCount != lent)
            co_return;
        if (text == loan_->text)
            loan_->changeCount = present;
    }
    returnClipboard();
}

QCoro::Task<> TextInjector::clipboardReturned()
{
    while (loan_) {
        const OneShot<Done> returned = loan_->returned;
        co_await returned;
    }
}

void TextInjector::returnClipboard()
{
    restoreTimer_.reset();
    const std::optional<Loan> loan = std::exchange(loan_, std::nullopt);
    if (!loan)
        return;
    if (pasteboard_.changeCount() == loan->changeCount) {
        pasteboard_.clearContents();
        if (loan->content)
            pasteboard_.setString(loan->content->text, pasteboard_type::string);
        if (loan->content && loan->content->isConcealed)
            pasteboard_.setString(QString(), pasteboard_type::concealed);
    }
    loan->returned.complete({});
}

} // namespace corvandi
