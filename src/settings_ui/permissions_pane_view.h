#pragma once

#include "panes/permission_rows.h"
#include "settings_ui/kit/grouped_form.h"

namespace corvandi {

/// The page that shows the permissions and lets the user grant them again.
///
/// The pane outlives it.
class PermissionsPaneView : public kit::GroupedForm {
    Q_OBJECT

public:
    explicit PermissionsPaneView(const PermissionsPane& pane, QWidget* parent = nullptr);
};

} // namespace corvandi
