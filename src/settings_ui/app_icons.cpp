#include "settings_ui/app_icons.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/painting.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>

namespace corvandi {
namespace {

/// As a picture of this very size: the icons of some themes are drawn anew each time that they are used.
QIcon drawn(const QIcon& icon, int points, qreal scale)
{
    const QPixmap picture = icon.pixmap(QSize(points, points), scale);
    return picture.isNull() ? QIcon() : QIcon(picture);
}

/// A plain tile, which is no particular application's.
QIcon tile(int points, qreal scale)
{
    QPixmap picture(QSize(points, points) * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    const kit::Colors colors = kit::Colors::of(QGuiApplication::palette());
    const qreal inset = points / 12.0;
    QPainter painter(&picture);
    kit::paintPanel(painter, QRectF(inset, inset, points - 2 * inset, points - 2 * inset), points / 5.0,
                    kit::mixed(colors.card, colors.text, 0.12F), kit::mixed(colors.card, colors.text, 0.3F));
    return {picture};
}

} // namespace

AppIcons::AppIcons(const AppCatalog& catalog, int points, qreal scale, QObject* parent)
    : QObject(parent)
    , catalog_(catalog)
    , points_(points)
    , scale_(scale)
    , generic_(tile(points, scale))
{
    next_.setSingleShot(true);
    connect(&next_, &QTimer::timeout, this, &AppIcons::loadNext);
}

QIcon AppIcons::icon(const QString& bundleID)
{
    const auto known = icons_.constFind(bundleID);
    if (known != icons_.constEnd())
        return *known;
    icons_.insert(bundleID, generic_);
    wanted_.push_back(bundleID);
    next_.start();
    return generic_;
}

void AppIcons::loadNext()
{
    const QString bundleID = wanted_.front();
    wanted_.pop_front();
    if (!wanted_.empty())
        next_.start();
    const QIcon own = load(catalog_.icon(bundleID));
    if (own.isNull())
        return;
    icons_.insert(bundleID, own);
    Q_EMIT loaded(bundleID);
}

QIcon AppIcons::load(const QString& nameOrPath) const
{
    return drawn(QDir::isAbsolutePath(nameOrPath) ? QIcon(nameOrPath) : QIcon::fromTheme(nameOrPath), points_,
                 scale_);
}

} // namespace corvandi
