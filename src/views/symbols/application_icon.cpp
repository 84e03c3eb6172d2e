#include "views/symbols/application_icon.h"

#include "views/symbols/symbol.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace corvandi {
namespace {

/// The sizes that window managers, docks and trays ask for, in pixels.
constexpr int sizes[] = {16, 18, 22, 24, 32, 48, 64, 96, 128, 256};

} // namespace

QIcon applicationIcon()
{
    QSvgRenderer renderer(drawingFile(QStringLiteral("application")));
    QIcon icon;
    for (const int size : sizes) {
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
