#pragma once

#include "ports/notice_presenter.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <utility>

namespace corvandi {

/// What the program tells and asks: one small dialog at a time. All text is shown as it is, never as markup,
/// whatever a server says.
///
/// A dialog that takes another one's place has the keyboard focus only if that one had it: the person
/// may have gone on to something else meanwhile. The first one has it unless it is asked to wait.
///
/// Thread: main thread only.
class NoticeDialogs : public NoticePresenter {
public:
    NoticeDialogs() = default;
    /// With another title than that of updates, for what else the program has to ask or to tell.
    explicit NoticeDialogs(QString title)
        : title_(std::move(title))
    {
    }

    void showBusy(const QString& text, std::function<void()> cancel) override;
    void ask(const Question& question, std::function<void(Answer)> answer) override;
    void tell(const Notice& notice) override;
    void dismiss() override;
    void bringToFront() override;

private:
    struct Closing {
        void operator()(QDialog* dialog) const;
    };

    [[nodiscard]] bool isPersonHere() const;
    void show(std::unique_ptr<QDialog> dialog, Attention attention);

    QString title_;
    std::unique_ptr<QDialog, Closing> shown_;
    /// Was shown to have the focus, and has not had it yet.
    bool awaitsFocus_ = false;
};

} // namespace corvandi
