#pragma once

#include "settings_ui/app_icons.h"

#include <QListWidget>
#include <QStyledItemDelegate>

namespace corvandi {

/// Draws the rows of a list of applications: the icon and the name, on a tint of the accent colour while
/// it is selected. An item's `bundleIDRole` tells whose icon it is; it is asked for when the row is drawn.
class AppListDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int bundleIDRole = Qt::UserRole;
    /// In points.
    static constexpr int iconSize = 24;

    /// The referees outlive it.
    AppListDelegate(AppIcons& icons, const QListWidget& list, QObject* parent = nullptr);

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    AppIcons& icons_;
    const QListWidget& list_;
};

} // namespace corvandi
