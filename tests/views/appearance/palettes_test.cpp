#include "views/appearance/appearance_follower.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

const QColor blue(48, 140, 198);

/// Contrast of two colours as the Web Content Accessibility Guidelines 2.1 define it, 1...21.
double contrast(const QColor& one, const QColor& other)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&](const QColor& color) {
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

double contrast(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole background)
{
    return contrast(palette.color(text), palette.color(background));
}

TEST(Palettes, AreWhatTheirNamesSay)
{
    EXPECT_FALSE(isDark(lightPalette(blue)));
    EXPECT_TRUE(isDark(darkPalette(blue)));
}

TEST(Palettes, TextIsLegible)
{
    for (const QPalette& palette : {lightPalette(blue), darkPalette(blue)}) {
        EXPECT_GT(contrast(palette, QPalette::WindowText, QPalette::Window), 7);
        EXPECT_GT(contrast(palette, QPalette::Text, QPalette::Base), 7);
        EXPECT_GT(contrast(palette, QPalette::ButtonText, QPalette::Button), 7);
        EXPECT_GT(contrast(palette, QPalette::ToolTipText, QPalette::ToolTipBase), 7);
        EXPECT_GT(contrast(palette, QPalette::PlaceholderText, QPalette::Base), 4.5);
        EXPECT_GT(contrast(palette, QPalette::PlaceholderText, QPalette::Window), 4.5);
        EXPECT_GT(contrast(palette, QPalette::Link, QPalette::Window), 4.5);
        EXPECT_GT(contrast(palette, QPalette::LinkVisited, QPalette::Window), 4.5);
    }
}

TEST(Palettes, WhatIsDisabledIsPalerButThere)
{
    for (const QPalette& palette : {lightPalette(blue), darkPalette(blue)}) {
        const QColor window = palette.color(QPalette::Window);
        const double disabled = contrast(palette.color(QPalette::Disabled, QPalette::WindowText), window);
        EXPECT_GT(disabled, 1.8);
        EXPECT_LT(disabled, contrast(palette, QPalette::WindowText, QPalette::Window) / 2);
    }
}

TEST(Palettes, SelectionsHaveTheAccentColourAndLegibleText)
{
    for (const QColor& accent : {blue, QColor(Qt::yellow), QColor(Qt::darkGreen), QColor(Qt::black)}) {
        for (const QPalette& palette : {lightPalette(accent), darkPalette(accent)}) {
            EXPECT_EQ(palette.color(QPalette::Highlight), accent);
            EXPECT_GE(contrast(palette, QPalette::HighlightedText, QPalette::Highlight), 3);
        }
    }
}

TEST(Palettes, TheThemesOwnPaletteIsUsedWhenItIsWhatTheDesktopWants)
{
    const QPalette light(Qt::white);
    const QPalette dark(QColor(20, 20, 60));
    EXPECT_EQ(paletteFor(ColorScheme::noPreference, light), light);
    EXPECT_EQ(paletteFor(ColorScheme::noPreference, dark), dark);
    EXPECT_EQ(paletteFor(ColorScheme::light, light), light);
    EXPECT_EQ(paletteFor(ColorScheme::dark, dark), dark);
}

TEST(Palettes, AThemeThatIsNotWhatTheDesktopWantsGivesNoMoreThanItsAccent)
{
    QPalette light(Qt::white);
    light.setColor(QPalette::Highlight, Qt::darkRed);
    EXPECT_EQ(paletteFor(ColorScheme::dark, light), darkPalette(Qt::darkRed));
    QPalette dark(QColor(20, 20, 60));
    dark.setColor(QPalette::Highlight, Qt::darkGreen);
    EXPECT_EQ(paletteFor(ColorScheme::light, dark), lightPalette(Qt::darkGreen));
}

} // namespace
} // namespace corvandi
