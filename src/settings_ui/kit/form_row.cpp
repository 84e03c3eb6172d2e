#include "settings_ui/kit/form_row.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"

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

} // namespace corvandi::kit
