#pragma once

#include "shell/panes/permission_rows.h"
#include "views/kit/button.h"
#include "views/kit/form.h"
#include "views/kit/text_label.h"

#include <QWidget>

namespace corvandi {

/// How a row says that its permission is granted: by a mark alone, or in words.
enum class PermissionRowStyle { welcome, settings };

/// A permission with what it is for, and at its end either the green mark or a button that asks for it.
class PermissionRowView : public QWidget {
    Q_OBJECT

public:
    PermissionRowView(const PermissionRow& row, PermissionRowStyle style, QWidget* parent = nullptr);

    void setState(PermissionState state);

private:
    QWidget& makeMark(PermissionRowStyle style);

    QWidget& mark_;
    kit::Button& grant_;
};

/// The page that shows the permissions and lets the user grant them again.
///
/// The pane outlives it.
class PermissionsPaneView : public kit::GroupedForm {
    Q_OBJECT

public:
    explicit PermissionsPaneView(const PermissionsPane& pane, QWidget* parent = nullptr);
};

} // namespace corvandi
