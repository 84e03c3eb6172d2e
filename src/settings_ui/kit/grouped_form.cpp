#include "settings_ui/kit/grouped_form.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/scroll_bar.h"

namespace corvandi::kit {
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

void GroupedForm::addWidget(QWidget& widget)
{
    layout_.addWidget(&widget);
}

QSize GroupedForm::minimumSizeHint() const
{
    // Narrower than its widest row it would be cut off; it never scrolls sideways.
    return {widget()->minimumSizeHint().width(), metrics::rowHeight};
}

} // namespace corvandi::kit
