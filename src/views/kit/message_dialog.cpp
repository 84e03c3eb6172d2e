#include "views/kit/message_dialog.h"

#include "views/kit/child.h"
#include "views/kit/text_label.h"
#include "views/symbols/symbol.h"

#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace corvandi::kit {
namespace {

/// In points, as wide as a comfortable line of text.
constexpr int narrowestText = 320;
constexpr int iconSize = 48;
constexpr int iconGap = 16;
constexpr int margin = 20;
constexpr int textGap = 6;
constexpr int buttonsGap = 20;
constexpr int buttonGap = 10;
constexpr int scrollingHeight = 220;
/// What still fits without scrolling.
constexpr qsizetype longestDetails = 500;
constexpr qsizetype mostLines = 10;

bool isLong(const QString& details)
{
    return details.size() > longestDetails || details.count(u'\n') >= mostLines;
}

} // namespace

MessageDialog::MessageDialog(const QString& text, const QString& details, QWidget* parent)
    : QDialog(parent)
{
    auto& icon = makeChild<QLabel>(*this);
    icon.setPixmap(applicationIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto& all = makeLayout<QVBoxLayout>(*this, {margin, margin, margin, margin}, buttonsGap);
    auto& top = makeInnerLayout<QHBoxLayout>(iconGap);
    auto& words = makeInnerLayout<QVBoxLayout>(textGap);
    auto& header = makeChild<TextLabel>(*this, text, TextStyle::header);
    header.setMinimumWidth(narrowestText);
    words.addWidget(&header);
    words.addWidget(&makeDetails(details), 1);
    top.addWidget(&icon, 0, Qt::AlignTop);
    top.addLayout(&words, 1);
    buttons_ = &makeInnerLayout<QHBoxLayout>(buttonGap);
    buttons_->addStretch(1);
    all.addLayout(&top, 1);
    all.addLayout(buttons_);
    // As high as the texts are at the width that it gets.
    all.setSizeConstraint(QLayout::SetMinimumSize);
    setAccessibleName(text);
    setAccessibleDescription(details);
}

QWidget& MessageDialog::makeDetails(const QString& details)
{
    if (isLong(details)) {
        auto& scrolling = makeChild<QPlainTextEdit>(*this, details);
        scrolling.setReadOnly(true);
        scrolling.setMinimumHeight(scrollingHeight);
        return scrolling;
    }
    auto& label = makeChild<TextLabel>(*this, details, TextStyle::secondary);
    label.setAlignment(Qt::AlignTop);
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

Button& MessageDialog::addButton(const QString& text, int result, ButtonRole role)
{
    auto& button = makeChild<Button>(*this, text, role);
    buttons_->addWidget(&button);
    connect(&button, &QPushButton::clicked, this, [this, result] { done(result); });
    return button;
}

void MessageDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // From the beginning it is seen which button Return presses.
    setAttribute(Qt::WA_KeyboardFocusChange);
}

void MessageDialog::setDefaultButton(Button& button)
{
    button.setDefault(true);
    button.setFocus();
}

} // namespace corvandi::kit
