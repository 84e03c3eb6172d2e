#include "settings_ui/kit/form_row.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"

#include <QAccessible>
#include <QMouseEvent>

namespace corvandi::kit {
namespace {

constexpr QMargins margins(metrics::rowMargin, metrics::rowPadding, metrics::rowMargin, metrics::rowPadding);

constexpr int belowSpacing = 4;

} // namespace

FormRow::FormRow(const QString& label, QWidget* parent)
    : QWidget(parent)
    , column_(makeLayout<QVBoxLayout>(*this, margins, metrics::captionSpacing))
    , line_(makeInnerLayout<QHBoxLayout>(metrics::rowSpacing))
    , label_(makeChild<TextLabel>(*this, label, TextStyle::body))
{
    column_.addLayout(&line_);
    line_.addWidget(&label_, 1);
    setMinimumHeight(metrics::rowHeight);
}

void FormRow::setControl(QWidget& control)
{
    // What the eye sees of the control ends where the others end.
    line_.setContentsMargins(0, 0, -control.contentsMargins().right(), 0);
    line_.addWidget(&control, 0, Qt::AlignVCenter);
    if (control.accessibleName().isEmpty())
        control.setAccessibleName(label_.text());
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
    auto& place = makeInnerLayout<QHBoxLayout>();
    place.setContentsMargins(0, belowSpacing, 0, 0);
    place.addWidget(&widget);
    place.addStretch();
    column_.addLayout(&place);
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
