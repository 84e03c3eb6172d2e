#include "views/dialogs/notice_dialogs.h"

#include "views/kit/message_dialog.h"

#include <QGuiApplication>
#include <QProgressDialog>
#include <QWindow>

namespace corvandi {
namespace {

constexpr int progressWidth = 380;

QString translated(const char* text)
{
    return QCoreApplication::translate("Updates", text);
}

} // namespace

void NoticeDialogs::Closing::operator()(QDialog* dialog) const
{
    // Not at once: this may run inside a signal of the dialog.
    dialog->disconnect();
    dialog->hide();
    dialog->deleteLater();
}

void NoticeDialogs::showBusy(const QString& text, std::function<void()> cancel)
{
    auto dialog = std::make_unique<QProgressDialog>();
    dialog->setLabelText(text);
    dialog->setMinimumWidth(progressWidth);
    // No end in sight.
    dialog->setRange(0, 0);
    QObject::connect(dialog.get(), &QProgressDialog::canceled, std::move(cancel));
    show(std::move(dialog), Attention::take);
}

void NoticeDialogs::ask(const Question& question, std::function<void(Answer)> answer)
{
    auto dialog = std::make_unique<kit::MessageDialog>(question.notice.text, question.notice.details);
    dialog->addButton(question.decline, QDialog::Rejected, kit::ButtonRole::standard);
    kit::MessageDialog::setDefaultButton(
        dialog->addButton(question.accept, QDialog::Accepted, kit::ButtonRole::prominent));
    // Closing the window counts as its rejection.
    QObject::connect(dialog.get(), &QDialog::finished, [answer = std::move(answer)](int result) {
        answer(result == QDialog::Accepted ? Answer::accept : Answer::decline);
    });
    show(std::move(dialog), question.attention);
}

void NoticeDialogs::tell(const Notice& notice)
{
    auto dialog = std::make_unique<kit::MessageDialog>(notice.text, notice.details);
    kit::MessageDialog::setDefaultButton(
        dialog->addButton(translated("OK"), QDialog::Accepted, kit::ButtonRole::prominent));
    QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [this] { dismiss(); });
    show(std::move(dialog), Attention::take);
}

void NoticeDialogs::dismiss()
{
    shown_.reset();
}

void NoticeDialogs::bringToFront()
{
    if (!shown_)
        return;
    shown_->show();
    shown_->raise();
    shown_->activateWindow();
}

/// At the dialog that is shown: it has the focus or has been hidden by the person's own answer; or it has
/// only just been shown to be given the focus, and window managers take some milliseconds for that.
bool NoticeDialogs::isPersonHere() const
{
    return shown_->isActiveWindow() || shown_->isHidden() || awaitsFocus_;
}

void NoticeDialogs::show(std::unique_ptr<QDialog> dialog, Attention attention)
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
