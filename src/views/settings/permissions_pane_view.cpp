#include "views/settings/permissions_pane_view.h"

#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/settings/managed_widget_windows.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace corvandi {
namespace {

namespace metrics = kit::metrics;

constexpr QMargins margins(metrics::rowMargin, metrics::rowPadding, metrics::rowMargin, metrics::rowPadding);
constexpr int markSize = 20;
constexpr int labelledMarkSize = 16;
constexpr int markGap = 6;

QString granted()
{
    return QCoreApplication::translate("PermissionRow", "Granted");
}

} // namespace

PermissionRowView::PermissionRowView(const PermissionRow& row, PermissionRowStyle style, QWidget* parent)
    : QWidget(parent)
    , mark_(makeMark(style))
    , grant_(kit::makeChild<kit::Button>(*this, QCoreApplication::translate("PermissionRow", "Grant"),
                                         kit::ButtonRole::standard))
{
    auto& line = kit::makeLayout<QHBoxLayout>(*this, margins, metrics::rowSpacing);
    auto& texts = kit::makeInnerLayout<QVBoxLayout>(metrics::captionSpacing);
    line.addLayout(&texts, 1);
    texts.addWidget(&kit::makeChild<kit::TextLabel>(*this, row.title, kit::TextStyle::rowTitle));
    texts.addWidget(&kit::makeChild<kit::TextLabel>(*this, row.detail, kit::TextStyle::caption));
    line.addWidget(&mark_, 0, Qt::AlignVCenter);
    line.addWidget(&grant_, 0, Qt::AlignVCenter);
    // Two buttons of the same text must not sound alike.
    grant_.setAccessibleName(grant_.text() + QLatin1Char(' ') + row.title);
    grant_.setAccessibleDescription(row.detail);
    connect(&grant_, &QPushButton::clicked, this, [action = row.grant] { action(); });
    setState(row.state);
}

QWidget& PermissionRowView::makeMark(PermissionRowStyle style)
{
    auto& mark = kit::makeChild<QWidget>(*this);
    auto& line = kit::makeLayout<QHBoxLayout>(mark, {}, markGap);
    const bool isLabelled = style == PermissionRowStyle::settings;
    line.addWidget(&kit::makeChild<kit::SymbolView>(mark, Symbol::checkmarkCircleFill,
                                                    isLabelled ? labelledMarkSize : markSize,
                                                    kit::SymbolTint::positive));
    if (isLabelled) {
        auto& label = kit::makeChild<kit::TextLabel>(mark, granted(), kit::TextStyle::positive);
        label.setWordWrap(false);
        line.addWidget(&label);
    } else {
        mark.setAccessibleName(granted());
        mark.setToolTip(granted());
    }
    return mark;
}

void PermissionRowView::setState(PermissionState state)
{
    const bool isGranted = state == PermissionState::granted;
    const bool hadFocus = grant_.hasFocus();
    mark_.setVisible(isGranted);
    grant_.setVisible(!isGranted);
    if (isGranted && hadFocus)
        focusNextChild();
}

PermissionsPaneView::PermissionsPaneView(const PermissionsPane& pane, QWidget* parent)
    : GroupedForm(parent)
{
    PermissionsModel& permissions = pane.permissions();
    kit::FormSection& section = addSection();
    const PermissionRows rows = pane.rows();
    kit::Card& card = section.card();
    auto& microphone = kit::makeChild<PermissionRowView>(card, rows.microphone, PermissionRowStyle::settings);
    auto& accessibility =
        kit::makeChild<PermissionRowView>(card, rows.accessibility, PermissionRowStyle::settings);
    card.addRow(microphone);
    card.addRow(accessibility);
    section.setFooter(PermissionsPane::note());
    connect(&permissions, &PermissionsModel::changed, this, [&permissions, &microphone, &accessibility] {
        microphone.setState(permissions.microphone());
        accessibility.setState(permissions.accessibility());
    });
    whenAppearing(*this, [&permissions] { permissions.refresh(); });
}

} // namespace corvandi
