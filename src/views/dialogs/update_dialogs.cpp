#include "views/dialogs/update_dialogs.h"

#include "views/kit/message_dialog.h"

#include <QGuiApplication>
#include <QProgressDialog>
#include <QWindow>

namespace corvandi {
namespace {

constexpr int progressWidth = 380;
/// A package has more bytes than an `int` counts, so they are shown in thousandths.
constexpr int64_t steps = 1000;

QString translated(const char* text)
{
    return QCoreApplication::translate("Updates", text);
}

std::unique_ptr<QProgressDialog> progressDialog(const QString& text)
{
    auto dialog = std::make_unique<QProgressDialog>();
    dialog->setLabelText(text);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->setMinimumWidth(progressWidth);
    // No end in sight until there is progress.
    dialog->setRange(0, 0);
    return dialog;
}

} // namespace

void UpdateDialogs::Closing::operator()(QDialog* dialog) const
{
    // Not at once: this may run inside a signal of the dialog.
    dialog->disconnect();
    dialog->hide();
    dialog->deleteLater();
}

void UpdateDialogs::showBusy(const QString& text, std::function<void()> cancel)
{
    auto dialog = progressDialog(text);
    QObject::connect(dialog.get(), &QProgressDialog::canceled, std::move(cancel));
    QProgressDialog* const progress = dialog.get();
    show(std::move(dialog), Attention::take);
    progress_ = progress;
}

void UpdateDialogs::showBusy(const QString& text)
{
    auto dialog = progressDialog(text);
    dialog->setCancelButton(nullptr);
    show(std::move(dialog), Attention::take);
}

void UpdateDialogs::showProgress(DownloadProgress progress)
{
    if (!progress_ || progress.total <= 0)
        return;
    progress_->setMaximum(static_cast<int>(steps));
    progress_->setValue(static_cast<int>(progress.received * steps / progress.total));
}

void UpdateDialogs::ask(const UpdateQuestion& question, std::function<void(UpdateAnswer)> answer)
{
    auto dialog = std::make_unique<kit::MessageDialog>(question.message.text, question.message.details);
    dialog->addButton(question.decline, QDialog::Rejected, kit::ButtonRole::standard);
    kit::MessageDialog::setDefaultButton(
        dialog->addButton(question.accept, QDialog::Accepted, kit::ButtonRole::prominent));
    // Closing the window counts as its rejection.
    QObject::connect(dialog.get(), &QDialog::finished, [answer = std::move(answer)](int result) {
        answer(result == QDialog::Accepted ? UpdateAnswer::accept : UpdateAnswer::decline);
    });
    show(std::move(dialog), question.attention);
}

void UpdateDialogs::tell(const UpdateMessage& message)
{
    auto dialog = std::make_unique<kit::MessageDialog>(message.text, message.details);
    kit::MessageDialog::setDefaultButton(
        dialog->addButton(translated("OK"), QDialog::Accepted, kit::ButtonRole::prominent));
    QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [this] { dismiss(); });
    show(std::move(dialog), Attention::take);
}

void UpdateDialogs::dismiss()
{
    shown_.reset();
}

void UpdateDialogs::bringToFront()
{
    if (!shown_)
        return;
    shown_->show();
    shown_->raise();
    shown_->activateWindow();
}

/// At the dialog that is shown: it has the focus or has been hidden by the person's own answer; or it has
/// only just been shown to be given the focus, and window managers take some milliseconds for that.
bool UpdateDialogs::isPersonHere() const
{
    return shown_->isActiveWindow() || shown_->isHidden() || awaitsFocus_;
}

void UpdateDialogs::show(std::unique_ptr<QDialog> dialog, Attention attention)
{
    const bool mayTakeFocus = shown_ ? isPersonHere() : attention == Attention::take;
    shown_.reset();
    shown_.reset(dialog.release());
    awaitsFocus_ = mayTakeFocus;
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, shown_.get(),
                     [this](const QWindow* window) { awaitsFocus_ = awaitsFocus_ && !window; });
    shown_->setWindowTitle(title_.isEmpty() ? translated("Corvandi Update") : title_);
    shown_->setAttribute(Qt::WA_ShowWithoutActivating, !mayTakeFocus);
    shown_->show();
    if (mayTakeFocus)
        bringToFront();
}

} // namespace corvandi
