#include "core/insertion/text_injector.h"

#include "base/awaitables.h"

#include <algorithm>

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

QCoro::Task<bool> TextInjector::insert(QString text, InsertionMethod method)
{
    if (text.isEmpty())
        co_return false;
    finishTyping();
    switch (method) {
    case InsertionMethod::type: {
        const bool typed = co_await type(text);
        if (typed)
            co_return true;
        const bool pasted = co_await paste(text);
        co_return pasted;
    }
    case InsertionMethod::paste: {
        const bool pasted = co_await paste(text);
        if (pasted)
            co_return true;
        const bool typed = co_await type(text);
        co_return typed;
    }
    }
    co_return false;
}

QCoro::Task<bool> TextInjector::type(QString text)
{
    auto source = keyboard_.createSource(text);
    if (!source)
        co_return false;
    typing_ = Typing{std::move(source), typingChunks(text.toStdU16String())};
    bool isPosted = postNextChunk();
    while (isPosted && typing_) {
        co_await sleepFor(queue_, turnForOtherWork);
        isPosted = postNextChunk();
    }
    co_return isPosted;
}

/// False when the source can't make the events. Nothing is left to be typed after that, and after the last
/// chunk.
bool TextInjector::postNextChunk()
{
    if (!typing_)
        return true;
    const std::u16string& chunk = typing_->chunks[typing_->posted++];
    const bool posted = postKeyPair(*typing_->source, virtual_key::none,
                                    [&](SyntheticKeyEvent& event) { event.text = chunk; });
    if (!posted || typing_->posted == typing_->chunks.size())
        typing_.reset();
    return posted;
}

void TextInjector::finishTyping()
{
    while (typing_)
        (void)postNextChunk();
}

bool TextInjector::postCommandV()
{
    const auto source = keyboard_.createSource(QString());
    return source && postKeyPair(*source, virtual_key::v,
                                 [](SyntheticKeyEvent& event) { event.flags = modifier_flags::command; });
}

QCoro::Task<bool> TextInjector::paste(QString text)
{
    std::optional<QString> previous = co_await contentToRestore();
    restoreTimer_.reset();
    loan_.reset();
    pasteboard_.clearContents();
    const bool set = pasteboard_.setString(text, pasteboard_type::string);
    pasteboard_.setString(QString(), pasteboard_type::concealed);
    const int64_t changeCount = pasteboard_.changeCount();
    if (!set || !postCommandV())
        co_return false;
    loan_ = Loan{std::move(previous), changeCount};
    restoreTimer_ = queue_.after(restoreDelay, [this] { restore(); });
    co_return true;
}

QCoro::Task<std::optional<QString>> TextInjector::contentToRestore()
{
    // Between a paste and its restore the clipboard holds that dictation; what the user had there
    // before must not be lost to a second paste within the second.
    if (loan_ && loan_->changeCount == pasteboard_.changeCount()) {
        std::optional<QString> lent = loan_->content;
        co_return lent;
    }
    std::optional<QString> content = co_await pasteboard_.string();
    co_return content;
}

void TextInjector::finishNow()
{
    finishTyping();
    restoreTimer_.reset();
    if (loan_)
        restore();
}

void TextInjector::restore()
{
    const Loan loan = *std::exchange(loan_, std::nullopt);
    if (pasteboard_.changeCount() != loan.changeCount)
        return;
    pasteboard_.clearContents();
    if (loan.content)
        pasteboard_.setString(*loan.content, pasteboard_type::string);
}

} // namespace corvandi
