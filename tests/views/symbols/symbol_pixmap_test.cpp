#include "views/symbols/symbol.h"

#include <gtest/gtest.h>

#include <set>

namespace corvandi {
namespace {

/// How much of the picture is covered, 0...1.
double coverage(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    }
    return sum / (image.width() * image.height());
}

QRect inkedArea(const QImage& image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 8)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

TEST(SymbolPixmap, EverySymbolHasADrawingOfItsOwn)
{
    std::set<QByteArray> drawings;
    for (const Symbol symbol : allSymbols) {
        const QImage image = drawSymbol(symbol, {32, 32}, Qt::black, 1);
        EXPECT_GT(coverage(image), 0.05) << symbolName(symbol).toStdString();
        drawings.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(drawings.size(), std::size(allSymbols));
}

TEST(SymbolPixmap, NoSymbolIsCutOffAtItsEdges)
{
    for (const Symbol symbol : allSymbols) {
        const QImage image = drawSymbol(symbol, {192, 192}, Qt::black, 1);
        const QRect inside = image.rect().adjusted(1, 1, -1, -1);
        EXPECT_TRUE(inside.contains(inkedArea(image))) << symbolName(symbol).toStdString();
    }
}

TEST(SymbolPixmap, IsInTheAskedColourEverywhere)
{
    const QColor green(36, 160, 66);
    for (const Symbol symbol : allSymbols) {
        const QImage image = drawSymbol(symbol, {24, 24}, green, 2);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() == 255) {
                    ASSERT_EQ(pixel.rgb(), green.rgb());
                }
            }
        }
    }
}

TEST(SymbolPixmap, ATranslucentColourStaysTranslucent)
{
    const QImage image = drawSymbol(Symbol::micFill, {24, 24}, QColor(255, 0, 0, 100), 1);
    EXPECT_EQ(image.pixelColor(12, 8).alpha(), 100);
}

TEST(SymbolPixmap, TheMarksOfFilledSymbolsAreHoles)
{
    const QImage image = drawSymbol(Symbol::exclamationmarkCircleFill, {48, 48}, Qt::black, 1);
    EXPECT_EQ(image.pixelColor(8, 24).alpha(), 255);
    EXPECT_EQ(image.pixelColor(24, 20).alpha(), 0);
}

TEST(SymbolPixmap, HasTheSizeAskedForAtEveryScale)
{
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        const QImage image = drawSymbol(Symbol::gearshape, {16, 16}, Qt::black, scale);
        EXPECT_EQ(image.size(), (QSizeF(16, 16) * scale).toSize());
        EXPECT_EQ(image.devicePixelRatio(), scale);
    }
}

TEST(SymbolPixmap, StandsInTheMiddleOfAnAreaThatIsNotSquare)
{
    const QRect area = inkedArea(drawSymbol(Symbol::plus, {40, 20}, Qt::black, 1));
    EXPECT_EQ(area.center().x(), 19);
    EXPECT_LE(area.width(), 20);
}

TEST(SymbolPixmap, NoSizeIsNoPicture)
{
    EXPECT_TRUE(drawSymbol(Symbol::plus, {0, 0}, Qt::black, 1).isNull());
    EXPECT_TRUE(symbolPixmap(Symbol::plus, {0, 10}, Qt::black, 1).isNull());
}

TEST(SymbolPixmap, SmallSymbolsAreDrawnHeavier)
{
    const auto share = [](int size) {
        return coverage(drawSymbol(Symbol::plus, {size, size}, Qt::black, 4));
    };
    EXPECT_GT(share(12), share(24) * 1.1);
}

TEST(SymbolPixmap, TheScreensVersionShowsTheSame)
{
    const QPixmap pixmap = symbolPixmap(Symbol::trash, {16, 16}, Qt::blue, 2);
    EXPECT_EQ(pixmap.devicePixelRatio(), 2);
    EXPECT_EQ(pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
              drawSymbol(Symbol::trash, {16, 16}, Qt::blue, 2));
    EXPECT_EQ(symbolPixmap(Symbol::trash, {16, 16}, Qt::blue, 2).cacheKey(), pixmap.cacheKey()) << "kept";
}

TEST(ApplicationIcon, HasEverySizeThatDesktopsAskFor)
{
    const QIcon icon = applicationIcon();
    for (const int size : {16, 18, 24, 32, 64, 128, 256}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size)));
        const QImage image = icon.pixmap(size).toImage();
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(image.pixelColor(size / 2, size / 2).alpha(), 255);
    }
}

} // namespace
} // namespace corvandi
