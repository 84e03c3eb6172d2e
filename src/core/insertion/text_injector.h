#pragma once

#include "base/main_queue.h"
#include "core/data/settings.h"
#include "ports/keyboard.h"
#include "ports/pasteboard.h"

#include <QCoroTask>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvandi {

/// Cuts `units` (UTF-16) into the pieces that one key event each can carry: at most 20 units, and no
/// piece ends between the two halves of a surrogate pair.
[[nodiscard]] std::vector<std::u16string> typingChunks(std::u16string_view units);

/// Puts text into whatever application has the keyboard focus, without that application's help: by
/// typing it, or by way of the clipboard and the paste shortcut. Each way falls back to the other.
///
/// Thread: main thread only. Must outlive the tasks that it returns.
class TextInjector {
public:
    TextInjector(Keyboard& keyboard, Pasteboard& pasteboard, MainQueue& queue);

    /// Whether `text` was handed to the target. False for an empty text, and when neither way worked;
    /// a target that ignores the events still counts as reached.
    ///
    /// A long text is typed bit by bit, with other work of the main queue in between: all of it has been
    /// posted when the task ends. If another text is inserted before that, the rest is posted first.
    [[nodiscard]] QCoro::Task<bool> insert(QString text, InsertionMethod method);

    /// Posts what is left of a text that is being typed, and gives the clipboard back that a paste has
    /// borrowed, if its second is not over yet. For the end of the program.
    void finishNow();

private:
    /// A clipboard that was borrowed for a paste.
    struct Loan {
        std::optional<QString> content;
        int64_t changeCount;
    };

    /// A text that is being typed: its source lets go of the keyboard when this goes.
    struct Typing {
        std::unique_ptr<KeyEventSource> source;
        std::vector<std::u16string> chunks;
        size_t posted = 0;
    };

    [[nodiscard]] QCoro::Task<bool> type(QString text);
    [[nodiscard]] bool postNextChunk();
    void finishTyping();
    [[nodiscard]] QCoro::Task<bool> paste(QString text);
    [[nodiscard]] bool postCommandV();
    [[nodiscard]] QCoro::Task<std::optional<QString>> contentToRestore();
    void restore();

    Keyboard& keyboard_;
    Pasteboard& pasteboard_;
    MainQueue& queue_;
    std::optional<Typing> typing_;
    std::optional<Loan> loan_;
    std::unique_ptr<Timer> restoreTimer_;
};

} // namespace corvandi
