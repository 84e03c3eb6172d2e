#include "shell/panes/settings_navigator.h"

#include <QCoreApplication>

namespace corvandi {

QString title(SettingsPane pane)
{
    switch (pane) {
    case SettingsPane::general:
        return QCoreApplication::translate("SettingsView", "General");
    case SettingsPane::vocabulary:
        return QCoreApplication::translate("SettingsView", "Vocabulary");
    case SettingsPane::history:
        return QCoreApplication::translate("SettingsView", "History");
    case SettingsPane::permissions:
        return QCoreApplication::translate("SettingsView", "Permissions");
    }
    return {};
}

void SettingsNavigator::setPane(SettingsPane pane)
{
    if (pane == pane_)
        return;
    pane_ = pane;
    Q_EMIT paneChanged();
}

} // namespace corvandi
