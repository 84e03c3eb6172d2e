#include "shell/menu/menu_bar_icon.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;

MenuBarImage ofSize(const QSizeF& size)
{
    MenuBarImage image;
    image.size = size;
    image.paint = [](QPainter&, const QRectF&, const QColor&) {};
    return image;
}

std::optional<MenuBarImage> noSymbol(const QString&)
{
    return std::nullopt;
}

TEST(MenuBarIcon, IsEighteenPointsHighAndKeepsItsProportions)
{
    const std::pair<QSizeF, QSizeF> sizes[] = {
        {{36, 36}, {18, 18}},     {{40, 20}, {36, 18}},
        {{20, 40}, {9, 18}},      {{17.5, 35.5}, {18 * 17.5 / 35.5, 18}},
        {{1024, 1024}, {18, 18}}, {{18, 18}, {18, 18}},
    };
    for (const auto& [given, fitted] : sizes)
        EXPECT_EQ(MenuBarIcon::resolve(ofSize(given), noSymbol).size, fitted);
}

TEST(MenuBarIcon, AHeightOfOnePointOrLessCountsAsOne)
{
    for (const double height : {1.0, 0.999, 0.25, 0.0, -36.0})
        EXPECT_EQ(MenuBarIcon::resolve(ofSize({2, height}), noSymbol).size, QSizeF(36, 18)) << height;
    EXPECT_EQ(MenuBarIcon::resolve(ofSize({2, 1.25}), noSymbol).size, QSizeF(28.8, 18));
    EXPECT_EQ(MenuBarIcon::resolve(ofSize({0, 0}), noSymbol).size, QSizeF(0, 18));
}

TEST(MenuBarIcon, IsATemplateWhateverThePictureWas)
{
    for (const bool wasTemplate : {false, true}) {
        MenuBarImage picture = ofSize({36, 36});
        picture.isTemplate = wasTemplate;
        const MenuBarImage icon = MenuBarIcon::resolve(picture, noSymbol);
        EXPECT_TRUE(icon.isTemplate);
        EXPECT_TRUE(icon.paint);
    }
}

TEST(MenuBarIcon, WithoutAPictureIsTheMicrophoneSymbolAsItIs)
{
    std::vector<QString> asked;
    const MenuBarIcon::SystemSymbol symbol = [&](const QString& name) {
        asked.push_back(name);
        return std::optional(ofSize({12, 17}));
    };
    const MenuBarImage icon = MenuBarIcon::resolve(std::nullopt, symbol);
    EXPECT_THAT(asked, ElementsAre(QStringLiteral("mic.fill")));
    EXPECT_EQ(icon.size, QSizeF(12, 17));
    EXPECT_TRUE(icon.paint);
}

TEST(MenuBarIcon, WithAPictureAsksForNoSymbol)
{
    bool isAsked = false;
    (void)MenuBarIcon::resolve(ofSize({36, 36}), [&](const QString&) {
        isAsked = true;
        return std::optional<MenuBarImage>();
    });
    EXPECT_FALSE(isAsked);
}

TEST(MenuBarIcon, WithoutPictureAndSymbolIsEmpty)
{
    for (const MenuBarIcon::SystemSymbol& symbol :
         {MenuBarIcon::SystemSymbol(noSymbol), MenuBarIcon::SystemSymbol()}) {
        const MenuBarImage icon = MenuBarIcon::resolve(std::nullopt, symbol);
        EXPECT_TRUE(icon.size.isEmpty());
        EXPECT_FALSE(icon.paint);
    }
}

TEST(MenuBarIcon, IsLoadedOnceAndNotBeforeItIsNeeded)
{
    int loads = 0;
    MenuBarIcon icon(
        [&] {
            ++loads;
            return std::optional(ofSize({40, 20}));
        },
        noSymbol);
    EXPECT_EQ(loads, 0);
    const MenuBarImage* first = &icon.image();
    EXPECT_EQ(&icon.image(), first);
    EXPECT_EQ(first->size, QSizeF(36, 18));
    EXPECT_EQ(loads, 1);
}

TEST(MenuBarIcon, AMissingPictureIsLookedForOnlyOnce)
{
    int loads = 0;
    MenuBarIcon icon(
        [&] {
            ++loads;
            return std::optional<MenuBarImage>();
        },
        noSymbol);
    EXPECT_FALSE(icon.image().paint);
    EXPECT_FALSE(icon.image().paint);
    EXPECT_EQ(loads, 1);
}

TEST(MenuBarIcon, WithNothingToLoadFromIsEmpty)
{
    MenuBarIcon icon({}, {});
    EXPECT_FALSE(icon.image().paint);
}

} // namespace
} // namespace corvandi
