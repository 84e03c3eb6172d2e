#include "settings_ui/permissions_pane_view.h"

#include "settings_ui/appearing.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/permission_row_view.h"

namespace corvandi {

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
