#include "views/kit/form.h"

#include "views/kit/child.h"
#include "views/kit/controls.h"
#include "views/kit/style.h"

#include <QComboBox>
#include <QMouseEvent>

namespace corvandi::kit {
namespace {

/// Some controls have room around them that is clear most of the time, such as that of a focus ring. As much
/// is left for it in every row, so that what the eye sees of the controls ends where the lines end.
constexpr int clearRoom = 3;
/// Between two controls of a row.
constexpr int controlSpacing = 8;
constexpr QMargins margins(metrics::rowMargin, metrics::rowPadding, metrics::rowMargin - clearRoom,
                           metrics::rowPadding);

} // namespace

FormRow::FormRow(const QString& label, QWidget* parent)
    : QWidget(parent)
    , column_(makeLayout<QVBoxLayout>(*this, margins, metrics::captionSpacing))
    , line_(makeInnerLayout<QHBoxLayout>(controlSpacing))
    , label_(makeChild<TextLabel>(*this, label, TextStyle::body))
{
    column_.addLayout(&line_);
    line_.addWidget(&label_, 1);
    line_.addSpacing(metrics::rowSpacing - controlSpacing);
    setMinimumHeight(metrics::rowHeight);
}

void FormRow::setControl(QWidget& control)
{
    line_.setContentsMargins(0, 0, qMax(0, clearRoom - control.contentsMargins().right()), 0);
    line_.addWidget(&control, 0, Qt::AlignVCenter);
    if (control.accessibleName().isEmpty())
        control.setAccessibleName(label_.text());
    // Combo boxes are known to assistive programs by their label alone.
    if (qobject_cast<QComboBox*>(&control)) {
        label_.setText(label_.text().replace(QLatin1Char('&'), QLatin1String("&&")));
        label_.setBuddy(&control);
    }
    // Among other controls, a label that is no sibling of theirs is not found.
    for (QComboBox* comboBox : control.findChildren<QComboBox*>())
        comboBox->setAccessibleDescription(label_.text());
}

void FormRow::addTrailing(QWidget& control)
{
    line_.addWidget(&control, 0, Qt::AlignVCenter);
}

void FormRow::setCaption(const QString& text, TextStyle style)
{
    if (!caption_) {
        caption_ = &makeChild<TextLabel>(*this, QString(), style);
        column_.insertWidget(1, caption_);
    }
    caption_->setTextStyle(style);
    caption_->setOptionalText(text);
}

void FormRow::addBelow(QWidget& widget)
{
    column_.addWidget(&widget, 0, Qt::AlignLeft);
}

ToggleRow::ToggleRow(const QString& label, QWidget* parent)
    : FormRow(label, parent)
    , toggle_(makeChild<Switch>(*this))
{
    setControl(toggle_);
}

void ToggleRow::mousePressEvent(QMouseEvent* event)
{
    // Taken, so that the release comes here as well.
    event->accept();
}

void ToggleRow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        toggle_.click();
}

namespace {

/// Headers and footers stand a little in from the edge of the card.
QVBoxLayout& inset(TextLabel& label)
{
    auto& place = makeInnerLayout<QVBoxLayout>();
    place.setContentsMargins(metrics::rowMargin, 0, metrics::rowMargin, 0);
    place.addWidget(&label);
    return place;
}

} // namespace

FormSection::FormSection(const QString& header, QWidget* parent)
    : QWidget(parent)
    , header_(makeChild<TextLabel>(*this, QString(), TextStyle::header))
    , card_(makeChild<Card>(*this))
    , footer_(makeChild<TextLabel>(*this, QString(), TextStyle::caption))
{
    auto& column = makeLayout<QVBoxLayout>(*this, {}, metrics::headerSpacing);
    column.addLayout(&inset(header_));
    column.addWidget(&card_);
    column.addLayout(&inset(footer_));
    header_.setOptionalText(header);
    footer_.setOptionalText({});
}

FormRow& FormSection::addRow(const QString& label, QWidget& control)
{
    auto& row = makeChild<FormRow>(card_, label);
    row.setControl(control);
    card_.addRow(row);
    return row;
}

ToggleRow& FormSection::addToggle(const QString& label)
{
    auto& row = makeChild<ToggleRow>(card_, label);
    card_.addRow(row);
    return row;
}

void FormSection::addWidget(QWidget& widget)
{
    auto& row = makeChild<QWidget>(card_);
    auto& layout = makeLayout<QVBoxLayout>(
        row, {metrics::rowMargin, metrics::rowPadding, metrics::rowMargin, metrics::rowPadding});
    layout.addWidget(&widget);
    card_.addRow(row);
}

void FormSection::setFooter(const QString& text)
{
    footer_.setOptionalText(text);
}

namespace {

/// The column takes all there is before the space beside it gets anything.
constexpr int columnStretch = 1000;
constexpr QMargins outerMargins(metrics::paneMargin, 4, metrics::paneMargin, metrics::paneMargin);

} // namespace

GroupedForm::GroupedForm(QWidget* parent)
    : QScrollArea(parent)
    , column_(makeChild<QWidget>(*viewport()))
    , layout_(makeLayout<QVBoxLayout>(column_, {}, metrics::sectionSpacing))
{
    auto content = std::make_unique<QWidget>();
    auto& line = makeLayout<QHBoxLayout>(*content, outerMargins);
    column_.setMaximumWidth(metrics::widestColumn);
    line.addStretch(1);
    line.addWidget(&column_, columnStretch, Qt::AlignTop);
    line.addStretch(1);
    setVerticalScrollBar(&makeChild<ScrollBar>(*this));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The scroll bar is for the pointer and the keys that the focused control leaves.
    setFocusPolicy(Qt::NoFocus);
    setWidget(content.release());
    // The window shows through.
    viewport()->setAutoFillBackground(false);
    widget()->setAutoFillBackground(false);
}

FormSection& GroupedForm::addSection(const QString& header)
{
    auto& section = makeChild<FormSection>(column_, header);
    layout_.addWidget(&section);
    return section;
}

QSize GroupedForm::minimumSizeHint() const
{
    // Narrower than its widest row it would be cut off; it never scrolls sideways.
    return {widget()->minimumSizeHint().width(), metrics::rowHeight};
}

} // namespace corvandi::kit
