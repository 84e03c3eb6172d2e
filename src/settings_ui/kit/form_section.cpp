#include "settings_ui/kit/form_section.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"

namespace corvandi::kit {
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

} // namespace corvandi::kit
