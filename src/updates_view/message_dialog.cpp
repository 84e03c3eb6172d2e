#include "updates_view/message_dialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStyle>
#include <QVBoxLayout>

namespace corvandi {
namespace {

/// In points, as wide as a comfortable line of text.
constexpr int narrowest = 420;
constexpr int iconSize = 48;
constexpr int scrollingHeight = 220;
/// What still fits without scrolling.
constexpr qsizetype longestDetails = 500;
constexpr qsizetype mostLines = 10;

bool isLong(const QString& details)
{
    return details.size() > longestDetails || details.count(u'\n') >= mostLines;
}

QIcon programIcon()
{
    const QIcon own = QApplication::windowIcon();
    return own.isNull() ? QApplication::style()->standardIcon(QStyle::SP_MessageBoxInformation) : own;
}

} // namespace

// The layouts own all that is put into them.
MessageDialog::MessageDialog(const UpdateMessage& message)
{
    auto* icon = new QLabel(this);
    icon->setPixmap(programIcon().pixmap(iconSize));
    icon->setAlignment(Qt::AlignTop);

    auto* text = new QLabel(message.text, this);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    QFont bold = text->font();
    bold.setBold(true);
    text->setFont(bold);

    auto* words = new QVBoxLayout;
    words->addWidget(text);
    words->addWidget(makeDetails(message.details), 1);
    auto* top = new QHBoxLayout;
    top->setSpacing(2 * top->spacing());
    top->addWidget(icon);
    top->addLayout(words, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addSpacing(all->spacing());
    all->addWidget(&buttons_);
    setMinimumWidth(narrowest);
}

QWidget* MessageDialog::makeDetails(const QString& details)
{
    if (isLong(details)) {
        auto* scrolling = new QPlainTextEdit(details, this);
        scrolling->setReadOnly(true);
        scrolling->setMinimumHeight(scrollingHeight);
        return scrolling;
    }
    auto* label = new QLabel(details, this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace corvandi
