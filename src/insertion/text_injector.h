#pragma once

#include "base/main_queue.h"
#include "platform/keyboard.h"
#include "platform/pasteboard.h"
#include "storage/insertion_method.h"

#include <QCoroTask>

#include <QString>

#include <memory>
#include <optional>

namespace corvandi {

/// Puts text into whatever application has the keyboard focus, without that application's help: by
/// typing it, or by way of the clipboard and the paste shortcut. Each way falls back to the other.
///
/// Thread: main thread only. Must outlive the tasks that it returns.
class TextInjector {
public:
    TextInjector(Keyboard& keyboard, Pasteboard& pasteboard, MainQueue& queue);

    /// Whether `text` was handed to the target. False for an empty text, and when neither way worked;
    /// a target that ignores the events still counts as reached.
    [[nodiscard]] QCoro::Task<bool> insert(QString text, InsertionMethod method);

    /// Gives the clipboard back now that a paste has borrowed, if its second is not over yet. For the
    /// end of the program.
    void restorePasteboardNow();

private:
    /// A clipboard that was borrowed for a paste.
    struct Loan {
        std::optional<QString> content;
        int64_t changeCount;
    };

    [[nodiscard]] bool type(const QString& text);
    [[nodiscard]] QCoro::Task<bool> paste(QString text);
    [[nodiscard]] bool postCommandV();
    [[nodiscard]] QCoro::Task<std::optional<QString>> contentToRestore();
    void restore();

    Keyboard& keyboard_;
    Pasteboard& pasteboard_;
    MainQueue& queue_;
    std::optional<Loan> loan_;
    std::unique_ptr<Timer> restoreTimer_;
};

} // namespace corvandi
