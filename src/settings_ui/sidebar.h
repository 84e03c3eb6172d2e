#pragma once

#include "panes/settings_navigator.h"

#include <QListWidget>

namespace corvandi {

/// The list of the pages; what is selected there and what the navigator says is always the same. Up and
/// Down move from page to page.
///
/// The navigator outlives it.
class Sidebar : public QListWidget {
    Q_OBJECT

public:
    /// Points; the same at every size of the window.
    static constexpr int fixedWidth = 215;

    explicit Sidebar(SettingsNavigator& navigator, QWidget* parent = nullptr);

private:
    void select(SettingsPane pane);
};

} // namespace corvandi
