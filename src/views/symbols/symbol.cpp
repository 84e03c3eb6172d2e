#include "views/symbols/symbol.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <stdexcept>

namespace corvandi {

QString symbolName(Symbol symbol)
{
    switch (symbol) {
    case Symbol::gearshape:
        return QStringLiteral("gearshape");
    case Symbol::characterBookClosed:
        return QStringLiteral("character_book_closed");
    case Symbol::clock:
        return QStringLiteral("clock");
    case Symbol::lockShield:
        return QStringLiteral("lock_shield");
    case Symbol::plus:
        return QStringLiteral("plus");
    case Symbol::trash:
        return QStringLiteral("trash");
    case Symbol::docOnDoc:
        return QStringLiteral("doc_on_doc");
    case Symbol::arrowRight:
        return QStringLiteral("arrow_right");
    case Symbol::magnifyingglass:
        return QStringLiteral("magnifyingglass");
    case Symbol::checkmarkCircleFill:
        return QStringLiteral("checkmark_circle_fill");
    case Symbol::exclamationmarkCircleFill:
        return QStringLiteral("exclamationmark_circle_fill");
    case Symbol::micFill:
        return QStringLiteral("mic_fill");
    case Symbol::chevronDown:
        return QStringLiteral("chevron_down");
    case Symbol::corvandi:
        return QStringLiteral("corvandi");
    }
    return {};
}

} // namespace corvandi

// What a static library has in resources is registered on demand only. The macro declares a function
// in the namespace that it stands in, and means a global one: so not even an unnamed one is right here.
static void registerDrawings()
{
    Q_INIT_RESOURCE(symbols);
}

namespace corvandi {
namespace {

/// The SVG text of a drawing that is built into the program, by its name without suffix.
QByteArray drawingFile(const QString& name)
{
    registerDrawings();
    QFile file(QStringLiteral(":/corvandi/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::logic_error("no drawing named " + name.toStdString());
    return file.readAll();
}

/// How the drawings name the weight of their lines, in units of which 24 are the symbol's size.
constexpr char lineWeight[] = "stroke-width=\"2\"";

/// The weight for a symbol of this size in points: 1.25 points at 12, 1.5 at 16, 2.4 at 32.
qreal opticalWeight(qreal size)
{
    constexpr qreal units = 24;
    const qreal points = 0.4 + size / 16;
    return std::clamp(points * units / size, 1.75, 2.5);
}

QByteArray drawing(Symbol symbol, qreal size)
{
    const QByteArray weight = "stroke-width=\"" + QByteArray::number(opticalWeight(size), 'f', 3) + '"';
    return drawingFile(symbolName(symbol)).replace(lineWeight, weight);
}

/// Colours a drawing: what is black in it becomes `color`, and white cuts out.
void colorize(QImage& image, const QColor& color)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int ink = qAlpha(line[x]) - qRed(line[x]);
            line[x] = qPremultiply(
                qRgba(color.red(), color.green(), color.blue(), (color.alpha() * ink + 127) / 255));
        }
    }
}

} // namespace

QImage drawSymbol(Symbol symbol, const QSize& points, const QColor& color, qreal scale)
{
    QImage image((QSizeF(points) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const int side = std::min(image.width(), image.height());
    if (side > 0) {
        QSvgRenderer renderer(drawing(symbol, side / scale));
        QRect square(0, 0, side, side);
        square.moveCenter(image.rect().center());
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, square);
    }
    colorize(image, color);
    image.setDevicePixelRatio(scale);
    return image;
}

QPixmap symbolPixmap(Symbol symbol, const QSize& points, const QColor& color, qreal scale)
{
    const QString key = QStringLiteral("corvandi-%1-%2x%3-%4-%5")
                            .arg(symbolName(symbol))
                            .arg(points.width())
                            .arg(points.height())
                            .arg(color.name(QColor::HexArgb))
                            .arg(scale);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap::fromImage(drawSymbol(symbol, points, color, scale));
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

namespace {

/// The sizes that window managers, docks and trays ask for, in pixels.
constexpr int iconSizes[] = {16, 18, 22, 24, 32, 48, 64, 96, 128, 256};

} // namespace

QIcon applicationIcon()
{
    QSvgRenderer renderer(drawingFile(QStringLiteral("application")));
    QIcon icon;
    for (const int size : iconSizes) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace corvandi
