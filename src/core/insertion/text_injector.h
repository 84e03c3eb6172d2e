#pragma once

#include "base/awaitables.h"
#include "base/main_queue.h"
#include "base/worker.h"
#include "core/data/settings.h"
#include "ports/keyboard.h"
#include "ports/pasteboard.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvandi {

/// Cuts `units` (UTF-16) into the pieces that one key event each can carry: at most 20 units, and no
/// piece ends between the two halves of a surrogate pair.
[[nodiscard]] std::vector<std::u16string> typingChunks(std::u16string_view units);

/// Whether a posting made now would reach the place that the text is meant for. Asked directly before each
/// one.
using PostingGate = std::function<bool()>;

struct Insertion {
    enum class Outcome {
        /// All of it was handed to the target; one that ignores the events still counts as reached.
        inserted,
        /// Neither way worked.
        failed,
        /// The gate was closed, or closed on the way.
        stopped,
    };
    Outcome outcome;
    /// What the target did not get: the end of a text whose typing was stopped on the way, else the whole
    /// text.
    QString rest;
};

/// Puts text into whatever application has the keyboard focus, without that application's help: by
/// typing it, or by way of the clipboard and the paste shortcut. Each way falls back to the other.
///
/// Thread: main thread only. Must outlive the tasks that it returns.
class TextInjector {
public:
    TextInjector(Keyboard& keyboard, Pasteboard& pasteboard, MainQueue& queue);

    /// Inserts `text`, which fails when it is empty. A long text is typed bit by bit, with other work of the
    /// main queue in between: all of it has been posted when the task ends. One text at a time.
    [[nodiscard]] QCoro::Task<Insertion> insert(QString text, InsertionMethod method, PostingGate mayPost);

    /// From now on nothing else gets its turn while a text is typed. For the end of the program.
    void hurry() { isHurried_ = true; }
    /// Ends when no clipboard is borrowed any more, which is a second after a paste.
    [[nodiscard]] QCoro::Task<> clipboardReturned();
    /// Gives a clipboard back that a paste has borrowed, even if its second is not over yet.
    void returnClipboard();

private:
    struct Content {
        QString text;
        bool isConcealed;
    };
    /// A clipboard that was borrowed for a paste.
    struct Loan {
        std::optional<Content> content;
        /// What is there instead.
        QString text;
        int64_t changeCount;
        OneShot<Done> returned;
    };

    /// Nothing when the events can't be made.
    [[nodiscard]] QCoro::Task<std::optional<Insertion>> type(QString text, PostingGate mayPost);
    /// Nothing when the clipboard refuses the text, or the shortcut can't be made.
    [[nodiscard]] QCoro::Task<std::optional<Insertion>> paste(QString text, PostingGate mayPost);
    [[nodiscard]] bool postCommandV();
    [[nodiscard]] QCoro::Task<std::optional<Content>> contentToRestore();
    [[nodiscard]] QCoro::Task<> endLoan();

    Keyboard& keyboard_;
    Pasteboard& pasteboard_;
    MainQueue& queue_;
    bool isHurried_ = false;
    std::optional<Loan> loan_;
    std::unique_ptr<Timer> restoreTimer_;
    Life life_;
};

} // namespace corvandi
