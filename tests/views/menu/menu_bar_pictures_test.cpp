#include "views/menu/menu_bar_pictures.h"
#include "views/symbols/symbol.h"

#include <QDir>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

QImage drawn(const MenuBarImage& image, double scale = 1)
{
    constexpr int side = 22;
    QImage picture(QSize(side, side) * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    image.paint(painter, QRectF(0, 0, side, side), Qt::red);
    painter.end();
    return picture;
}

QImage symbol(Symbol name, double scale = 1)
{
    return drawSymbol(name, QSize(22, 22), Qt::red, scale);
}

TEST(MenuBarPictures, TheProgramHasItsOwn)
{
    const std::optional<MenuBarImage> picture = programPicture();
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(drawn(*picture), symbol(Symbol::corvandi));
}

TEST(MenuBarPictures, AreDrawnSharpOnDenseScreens)
{
    EXPECT_EQ(drawn(programPicture().value(), 2), symbol(Symbol::corvandi, 2));
}

TEST(MenuBarPictures, TheMicrophoneIsAmongTheSymbols)
{
    const std::optional<MenuBarImage> picture = symbolPicture(QStringLiteral("mic.fill"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(drawn(*picture), symbol(Symbol::micFill));
}

TEST(MenuBarPictures, ASymbolThatIsNotThereIsNone)
{
    EXPECT_FALSE(symbolPicture(QStringLiteral("mic.empty")).has_value());
}

/// A picture that fills its area.
MenuBarImage block(const QSizeF& size)
{
    MenuBarImage image;
    image.size = size;
    image.isTemplate = true;
    image.paint = [](QPainter& painter, const QRectF& area, const QColor& color) {
        painter.fillRect(area, color);
    };
    return image;
}

QImage drawn(const QIcon& icon, int side)
{
    return icon.pixmap(QSize(side, side), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The smallest rectangle around all that is nearly white and opaque.
QRect whitePart(const QImage& image)
{
    QRect part;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() > 250 && color.lightness() > 250)
                part |= QRect(x, y, 1, 1);
        }
    }
    return part;
}

/// Puts an icon into the theme that every desktop has.
bool installIcon(const QString& name)
{
    const QDir icons(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/icons/hicolor/32x32/apps"));
    QImage picture(32, 32, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    return icons.mkpath(QStringLiteral(".")) && picture.save(icons.filePath(name + QStringLiteral(".png")));
}

TEST(TemplateIcon, IsDrawnSharpAtEverySizeOfPanels)
{
    const QIcon icon = templateIcon(block({18, 18}));
    for (const int side : {16, 22, 24, 32, 48, 64, 96}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(side, side)));
        const QImage image = drawn(icon, side);
        EXPECT_EQ(image.size(), QSize(side, side));
        EXPECT_GE(whitePart(image).width(), side * 5 / 6);
    }
}

TEST(TemplateIcon, IsDrawnWithMorePixelsOnAFinerScreen)
{
    const QPixmap picture = templateIcon(block({18, 18})).pixmap(QSize(22, 22), 2.0);
    EXPECT_EQ(picture.size(), QSize(44, 44));
}

TEST(TemplateIcon, IsWhiteWithADarkEdgeSoThatItStandsOutFromLightAndDark)
{
    const QImage image = drawn(templateIcon(block({18, 18})), 24);
    EXPECT_EQ(image.pixelColor(12, 12), QColor(Qt::white));
    EXPECT_LT(image.pixelColor(0, 12).lightness(), 50);
    EXPECT_GT(image.pixelColor(0, 12).alpha(), 100);
}

TEST(TemplateIcon, KeepsItsProportionsInTheMiddleOfTheSquare)
{
    const QRect wide = whitePart(drawn(templateIcon(block({36, 18})), 48));
    EXPECT_NEAR(wide.width(), 2 * wide.height(), 3);
    EXPECT_NEAR(wide.center().y(), 24, 1);
    const QRect tall = whitePart(drawn(templateIcon(block({9, 18})), 48));
    EXPECT_NEAR(tall.height(), 2 * tall.width(), 3);
    EXPECT_NEAR(tall.center().x(), 24, 1);
}

TEST(TemplateIcon, APictureThatIsNoTemplateIsDrawnWithoutEdge)
{
    MenuBarImage picture = block({18, 18});
    picture.isTemplate = false;
    picture.paint = [](QPainter& painter, const QRectF& area, const QColor&) {
        painter.fillRect(area, Qt::red);
    };
    const QImage image = drawn(templateIcon(picture), 24);
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(23, 23), QColor(Qt::red));
}

TEST(TemplateIcon, AnEmptyPictureIsTransparent)
{
    const QImage image = drawn(templateIcon(MenuBarImage()), 22);
    EXPECT_EQ(image.size(), QSize(22, 22));
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 22; ++x)
            ASSERT_EQ(qAlpha(image.pixel(x, y)), 0);
    }
}

TEST(TemplateIcon, BearsTheNameOfASymbolicIconWhenThatIsInstalledAndIsStillAPicture)
{
    const QString installed = QStringLiteral("corvandi-test-symbolic");
    // Before the toolkit looks for the first time: it does not see what is installed later.
    ASSERT_TRUE(installIcon(installed));
    const QIcon icon = templateIcon(block({18, 18}), installed);
    EXPECT_EQ(icon.name(), installed);
    EXPECT_EQ(drawn(icon, 24).pixelColor(12, 12), QColor(Qt::white));

    EXPECT_EQ(templateIcon(block({18, 18})).name(), QString());
    const QIcon without = templateIcon(block({18, 18}), QStringLiteral("corvandi-none-symbolic"));
    EXPECT_EQ(without.name(), QString());
}

/// To be looked at: all sizes on a light and on a dark panel.
TEST(TemplateIcon, KeepsAPictureOfItself)
{
    QImage sheet(340, 220, QImage::Format_RGB32);
    sheet.fill(QColor(245, 245, 245));
    QPainter painter(&sheet);
    painter.fillRect(0, 110, 340, 110, QColor(50, 50, 50));
    MenuBarImage ring = block({18, 18});
    ring.paint = [](QPainter& brush, const QRectF& area, const QColor& color) {
        brush.setPen(QPen(color, area.width() / 8));
        brush.drawEllipse(
            area.adjusted(area.width() / 8, area.width() / 8, -area.width() / 8, -area.width() / 8));
    };
    const QIcon icon = templateIcon(ring);
    for (const int top : {5, 115}) {
        int left = 5;
        for (const int side : {16, 22, 24, 32, 48, 64, 96}) {
            painter.drawPixmap(left, top, icon.pixmap(QSize(side, side), 1.0));
            left += side + 5;
        }
    }
    painter.end();
    EXPECT_TRUE(sheet.save(QStringLiteral(SCREENSHOTS "/template-icon.png")));
}

} // namespace
} // namespace corvandi
