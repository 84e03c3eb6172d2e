#pragma once

#include <QString>

#include <cstdint>
#include <functional>

namespace corvandi {

/// Something to read: a sentence, and what else there is to say. Both are plain text.
struct Notice {
    QString text;
    QString details;
};

/// Whether a window that comes up may take the keyboard focus. One that comes by itself must not: the
/// person may be writing elsewhere.
enum class Attention : uint8_t { take, waitForIt };

/// Something to decide.
struct Question {
    Notice notice;
    /// What the buttons say.
    QString accept;
    QString decline;
    /// When nothing was shown before.
    Attention attention = Attention::take;
};

enum class Answer : uint8_t { accept, decline };

/// What the program tells and asks outside its windows: one thing at a time, each in place of the one before.
///
/// Thread: main thread only. No call waits for the person. A callback comes at most once, later, and
/// never after something else was shown or all was dismissed. Closing a window declines or cancels. What
/// is shown in place of something else takes the focus only if that had it.
class NoticePresenter {
public:
    virtual ~NoticePresenter() = default;

    /// Something takes a while and can be given up.
    virtual void showBusy(const QString& text, std::function<void()> cancel) = 0;
    virtual void ask(const Question& question, std::function<void(Answer)> answer) = 0;
    /// Stays until the person closes it.
    virtual void tell(const Notice& notice) = 0;
    /// Takes away whatever is shown.
    virtual void dismiss() = 0;
    /// Shows the person what is shown already.
    virtual void bringToFront() = 0;
};

} // namespace corvandi
