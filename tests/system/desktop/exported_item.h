#pragma once

#include "harness/menu_layout.h"

#include <QStringList>
#include <QVariant>

#include <string>
#include <vector>

namespace corvandi::testing {

/// The tray's name on the session bus.
inline const QString trayService = QStringLiteral("org.kde.StatusNotifierWatcher");

/// The bus names of the items that the desktop's tray shows; none when there is no tray.
[[nodiscard]] QStringList shownItems();

/// A program's tray item as trays see it, over the session bus.
class ExportedItem {
public:
    /// `service` is one of `shownItems`.
    explicit ExportedItem(QString service)
        : service_(std::move(service))
    {
    }

    [[nodiscard]] QVariant property(const QString& name) const;
    /// What a tray does before it shows the menu.
    void aboutToShowMenu() const;
    /// The menu's lines from top to bottom: the label, in brackets if it can be chosen, the shortcut.
    [[nodiscard]] std::vector<std::string> menu() const;
    /// The numbers by which the tray knows the menu's lines.
    [[nodiscard]] QList<int> ids() const;
    /// What a tray does when the item with this label is chosen.
    void choose(const QString& label) const;

private:
    [[nodiscard]] std::vector<harness::MenuLine> lines() const;

    QString service_;
};

} // namespace corvandi::testing
