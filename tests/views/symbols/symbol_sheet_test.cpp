#include "views/symbols/symbol.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

constexpr int cell = 44;

QImage sheet(const QSize& size, const QColor& background, qreal scale)
{
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.fill(background);
    image.setDevicePixelRatio(scale);
    return image;
}

/// All symbols in rows of growing size.
QImage symbolSheet(const QColor& background, const QColor& ink, qreal scale)
{
    const int sizes[] = {12, 14, 16, 18, 20, 24, 32};
    QImage image =
        sheet({cell * int(std::size(allSymbols)), cell * int(std::size(sizes))}, background, scale);
    QPainter painter(&image);
    int y = 0;
    for (const int size : sizes) {
        int x = 0;
        for (const Symbol symbol : allSymbols) {
            const int inset = (cell - size) / 2;
            painter.drawPixmap(x + inset, y + inset, symbolPixmap(symbol, {size, size}, ink, scale));
            x += cell;
        }
        y += cell;
    }
    return image;
}

/// The application's icon and its one-colour form in the sizes of trays, lists and docks.
QImage applicationSheet(const QColor& background, const QColor& ink)
{
    QImage image = sheet({600, 160}, background, 1);
    QPainter painter(&image);
    int x = 12;
    for (const int size : {16, 18, 24, 32, 64, 128}) {
        painter.drawPixmap(x, 12, applicationIcon().pixmap(size));
        x += size + 12;
    }
    x = 370;
    for (const int size : {16, 18, 24, 32, 64}) {
        painter.drawPixmap(x, 60, symbolPixmap(Symbol::corvandi, {size, size}, ink, 1));
        x += size + 12;
    }
    return image;
}

struct Scheme {
    const char* name;
    QColor background;
    QColor ink;
};

const Scheme schemes[] = {{"light", QColor(246, 246, 248), QColor(40, 40, 44)},
                          {"dark", QColor(40, 40, 44), QColor(230, 230, 235)}};

TEST(SymbolSheet, EverySymbolIsKeptAsAPicture)
{
    for (const Scheme& scheme : schemes) {
        for (const int scale : {1, 2}) {
            const QString name =
                QStringLiteral(SCREENSHOTS "/symbols_%1_%2x.png").arg(QLatin1String(scheme.name)).arg(scale);
            EXPECT_TRUE(symbolSheet(scheme.background, scheme.ink, scale).save(name));
        }
    }
}

TEST(SymbolSheet, TheApplicationsIconIsKeptAsAPicture)
{
    for (const Scheme& scheme : schemes) {
        const QString name =
            QStringLiteral(SCREENSHOTS "/application_icon_%1.png").arg(QLatin1String(scheme.name));
        EXPECT_TRUE(applicationSheet(scheme.background, scheme.ink).save(name));
    }
}

} // namespace
} // namespace corvandi
