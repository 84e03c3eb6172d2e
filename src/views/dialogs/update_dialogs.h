#pragma once

#include "shell/updates/update_presenter.h"

#include <QDialog>
#include <QPointer>
#include <QString>

#include <memory>
#include <utility>

class QProgressDialog;

namespace corvandi {

/// The updater's face: one small dialog at a time. All text is shown as it is, never as markup, whatever
/// a server says.
///
/// A dialog that takes another one's place has the keyboard focus only if that one had it: the person
/// may have gone on to something else meanwhile. The first one has it unless it is asked to wait.
///
/// Thread: main thread only.
class UpdateDialogs : public UpdatePresenter {
public:
    UpdateDialogs() = default;
    /// With another title than that of updates, for what else the program has to ask or to tell.
    explicit UpdateDialogs(QString title)
        : title_(std::move(title))
    {
    }

    void showBusy(const QString& text, std::function<void()> cancel) override;
    void showBusy(const QString& text) override;
    void showProgress(DownloadProgress progress) override;
    void ask(const UpdateQuestion& question, std::function<void(UpdateAnswer)> answer) override;
    void tell(const UpdateMessage& message) override;
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
    /// The one that is shown, if it shows progress.
    QPointer<QProgressDialog> progress_;
};

} // namespace corvandi
