#pragma once

#include "storage/app_catalog.h"

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QTimer>

#include <deque>

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
    QTimer next_;
    QIcon generic_;
};

} // namespace corvandi
