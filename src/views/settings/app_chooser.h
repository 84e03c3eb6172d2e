#pragma once

#include "core/data/app_catalog.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/text_label.h"

#include <QBoxLayout>
#include <QDialog>
#include <QHash>
#include <QIcon>
#include <QListWidget>
#include <QObject>
#include <QStyledItemDelegate>
#include <QTimer>

#include <deque>
#include <functional>
#include <vector>

namespace corvandi {

/// The icons of applications. Looking one up in the desktop's theme and reading its file takes up to a few
/// milliseconds: they are loaded one by one, each in a turn of the event loop of its own, when they are
/// first asked for.
///
/// Thread: main thread only. The catalog outlives it.
class AppIcons : public QObject {
    Q_OBJECT

public:
    /// `points`: how large they will be drawn; `scale`: device pixels to the point.
    AppIcons(const AppCatalog& catalog, int points, qreal scale, QObject* parent = nullptr);

    /// The icon that stands for any application until the application's own is loaded, and afterwards if
    /// it has none. Never empty.
    [[nodiscard]] QIcon icon(const QString& bundleID);

Q_SIGNALS:
    void loaded(const QString& bundleID);

private:
    void loadNext();
    [[nodiscard]] QIcon load(const QString& nameOrPath) const;

    const AppCatalog& catalog_;
    int points_;
    qreal scale_;
    QHash<QString, QIcon> icons_;
    std::deque<QString> wanted_;
    QTimer nextTurn_;
    QIcon generic_;
};

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

/// Lets the user pick one of the installed applications, shown with their icons. Typing narrows the list
/// down and selects the first match; the arrow keys move in the list meanwhile. Nothing is picked when it
/// is closed in any other way than by its button, Return or a double click.
class AppChooser : public QDialog {
    Q_OBJECT

public:
    using Picked = std::function<void(const AppInfo&)>;

    AppChooser(const AppCatalog& catalog, Picked picked, QWidget* parent = nullptr);

    /// Opens one over `parent` that goes when it is closed. Does not wait for it.
    static void open(const AppCatalog& catalog, QWidget& parent, Picked picked);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addList();
    void addButtons(QBoxLayout& column);
    void narrowDown(const QString& part);
    void select(QListWidgetItem* item);
    void showState();
    void pick();

    std::vector<AppInfo> apps_;
    Picked picked_;
    AppIcons icons_;
    kit::TextField& search_;
    QListWidget& list_;
    kit::TextLabel& noMatches_;
    kit::Button& choose_;
};

} // namespace corvandi
