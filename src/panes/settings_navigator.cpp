#include "panes/settings_navigator.h"

namespace corvandi {

void SettingsNavigator::setPane(SettingsPane pane)
{
    if (pane == pane_)
        return;
    pane_ = pane;
    Q_EMIT paneChanged();
}

} // namespace corvandi
