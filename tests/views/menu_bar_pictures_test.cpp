#include "menu_view/menu_bar_pictures.h"

#include "symbols/symbol_pixmap.h"

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
    const std::optional<MenuBarImage> picture =
        symbolPicture(QStringLiteral("mic.fill"), QStringLiteral("Corvandi"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->accessibilityDescription, QStringLiteral("Corvandi"));
    EXPECT_EQ(drawn(*picture), symbol(Symbol::micFill));
}

TEST(MenuBarPictures, ASymbolThatIsNotThereIsNone)
{
    EXPECT_FALSE(symbolPicture(QStringLiteral("mic.empty"), QString()).has_value());
}

} // namespace
} // namespace corvandi
