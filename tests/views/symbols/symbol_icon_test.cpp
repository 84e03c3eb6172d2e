#include "views/symbols/symbol_icon.h"

#include "views/symbols/application_icon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

/// Where the microphone is solid.
constexpr QPoint inMicrophone(12, 8);

class SymbolIconTest : public ::testing::Test {
protected:
    SymbolIconTest() { QGuiApplication::setPalette(palette(Qt::black)); }
    ~SymbolIconTest() override { QGuiApplication::setPalette(before); }
    [[nodiscard]] static QPalette palette(const QColor& text)
    {
        QPalette palette;
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(120, 120, 120));
        palette.setColor(QPalette::PlaceholderText, QColor(90, 90, 200));
        palette.setColor(QPalette::HighlightedText, QColor(255, 255, 200));
        return palette;
    }
    [[nodiscard]] static QColor colorOf(const QIcon& icon, QIcon::Mode mode)
    {
        return icon.pixmap(QSize(24, 24), 1, mode).toImage().pixelColor(inMicrophone);
    }

    const QPalette before = QGuiApplication::palette();
    const QIcon icon = symbolIcon(Symbol::micFill);
};

TEST_F(SymbolIconTest, HasTheTextsColourInEveryState)
{
    EXPECT_EQ(colorOf(icon, QIcon::Normal), QColor(Qt::black));
    EXPECT_EQ(colorOf(icon, QIcon::Active), QColor(Qt::black));
    EXPECT_EQ(colorOf(icon, QIcon::Disabled), QColor(120, 120, 120));
    EXPECT_EQ(colorOf(icon, QIcon::Selected), QColor(255, 255, 200));
}

TEST_F(SymbolIconTest, FollowsAChangeOfThePalette)
{
    ASSERT_EQ(colorOf(icon, QIcon::Normal), QColor(Qt::black));
    QGuiApplication::setPalette(palette(Qt::white));
    EXPECT_EQ(colorOf(icon, QIcon::Normal), QColor(Qt::white));
}

TEST_F(SymbolIconTest, MayHaveTheColourOfAnotherText)
{
    EXPECT_EQ(colorOf(symbolIcon(Symbol::micFill, QPalette::PlaceholderText), QIcon::Normal),
              QColor(90, 90, 200));
}

TEST_F(SymbolIconTest, AColourOfItsOwnGivesWayOnlyWhenSelectedOrDisabled)
{
    const QIcon green = symbolIcon(Symbol::micFill, QColor(36, 160, 66));
    EXPECT_EQ(colorOf(green, QIcon::Normal), QColor(36, 160, 66));
    EXPECT_EQ(colorOf(green, QIcon::Disabled), QColor(120, 120, 120));
    EXPECT_EQ(colorOf(green, QIcon::Selected), QColor(255, 255, 200));
}

TEST_F(SymbolIconTest, IsSharpAtEveryScale)
{
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        const QPixmap pixmap = icon.pixmap(QSize(16, 16), scale);
        EXPECT_EQ(pixmap.size(), (QSizeF(16, 16) * scale).toSize());
        EXPECT_EQ(pixmap.devicePixelRatio(), scale);
    }
}

TEST_F(SymbolIconTest, PaintsItselfWhereItIsTold)
{
    QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.paint(&painter, QRect(30, 30, 24, 24));
    painter.end();
    EXPECT_EQ(image.pixelColor(QPoint(30, 30) + inMicrophone), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(inMicrophone).alpha(), 0);
}

TEST_F(SymbolIconTest, CopiesLiveOn)
{
    QIcon copy;
    {
        const QIcon original = symbolIcon(Symbol::micFill);
        copy = original;
    }
    EXPECT_FALSE(copy.isNull());
    EXPECT_EQ(colorOf(copy, QIcon::Normal), QColor(Qt::black));
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
