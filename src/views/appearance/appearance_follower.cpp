#include "views/appearance/appearance_follower.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

/// The neutral tones of a palette, from which the rest follows.
struct Tones {
    QColor window;
    QColor base;
    QColor alternateBase;
    QColor button;
    QColor text;
    QColor toolTip;
    QColor link;
    QColor visitedLink;
    /// How much of the text's colour is left in secondary and in disabled text, 0...1.
    float secondary;
    float disabled;
};

/// Brightness as the eye sees it, 0...1 (WCAG 2.1, relative luminance).
qreal luminance(const QColor& color)
{
    const auto linear = [](qreal part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

/// White where it can be read well enough: on colours of middle brightness it looks better than black.
QColor textOn(const QColor& background)
{
    constexpr qreal legible = 3;
    return contrast(Qt::white, background) >= legible ? QColor(Qt::white) : QColor(Qt::black);
}

QColor mixed(const QColor& one, const QColor& other, float share)
{
    const auto mix = [share](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

void setTexts(QPalette& palette, const Tones& tones)
{
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, tones.text);
    palette.setColor(QPalette::BrightText, textOn(tones.window));
    palette.setColor(QPalette::PlaceholderText, mixed(tones.base, tones.text, tones.secondary));
    palette.setColor(QPalette::Link, tones.link);
    palette.setColor(QPalette::LinkVisited, tones.visitedLink);
}

void setShades(QPalette& palette, const Tones& tones)
{
    palette.setColor(QPalette::Light, tones.button.lighter(150));
    palette.setColor(QPalette::Midlight, tones.button.lighter(115));
    palette.setColor(QPalette::Mid, tones.button.darker(130));
    palette.setColor(QPalette::Dark, tones.button.darker(160));
    palette.setColor(QPalette::Shadow, Qt::black);
}

void setDisabled(QPalette& palette, const Tones& tones, const QColor& accent)
{
    const QColor pale = mixed(tones.window, tones.text, tones.disabled);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, pale);
    palette.setColor(QPalette::Disabled, QPalette::Base, tones.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, mixed(tones.window, accent, tones.disabled));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, pale);
}

QPalette paletteFrom(const Tones& tones, const QColor& accent)
{
    QPalette palette;
    palette.setColor(QPalette::Window, tones.window);
    palette.setColor(QPalette::Base, tones.base);
    palette.setColor(QPalette::AlternateBase, tones.alternateBase);
    palette.setColor(QPalette::Button, tones.button);
    palette.setColor(QPalette::ToolTipBase, tones.toolTip);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, textOn(accent));
    setTexts(palette, tones);
    setShades(palette, tones);
    setDisabled(palette, tones, accent);
    return palette;
}

} // namespace

bool isDark(const QPalette& palette)
{
    return luminance(palette.color(QPalette::Window)) < luminance(palette.color(QPalette::WindowText));
}

QPalette lightPalette(const QColor& accent)
{
    return paletteFrom({.window = QColor(244, 244, 246),
                        .base = QColor(255, 255, 255),
                        .alternateBase = QColor(248, 248, 250),
                        .button = QColor(250, 250, 252),
                        .text = QColor(29, 29, 33),
                        .toolTip = QColor(255, 255, 255),
                        .link = QColor(0, 92, 197),
                        .visitedLink = QColor(107, 63, 160),
                        .secondary = 0.66F,
                        .disabled = 0.42F},
                       accent);
}

QPalette darkPalette(const QColor& accent)
{
    return paletteFrom({.window = QColor(42, 42, 46),
                        .base = QColor(30, 30, 33),
                        .alternateBase = QColor(37, 37, 41),
                        .button = QColor(58, 58, 63),
                        .text = QColor(236, 236, 240),
                        .toolTip = QColor(58, 58, 63),
                        .link = QColor(104, 171, 255),
                        .visitedLink = QColor(190, 150, 240),
                        .secondary = 0.66F,
                        .disabled = 0.42F},
                       accent);
}

QPalette paletteFor(ColorScheme scheme, const QPalette& platform)
{
    const QColor accent = platform.color(QPalette::Highlight);
    switch (scheme) {
    case ColorScheme::noPreference:
        return platform;
    case ColorScheme::dark:
        return isDark(platform) ? platform : darkPalette(accent);
    case ColorScheme::light:
        return isDark(platform) ? lightPalette(accent) : platform;
    }
    return platform;
}

AppearanceFollower::AppearanceFollower(Appearance& appearance)
    : appearance_(appearance)
    , registration_(appearance.onChange([this] { follow(); }))
{
    follow();
}

void AppearanceFollower::follow()
{
    // An empty palette gives the application that of its theme back.
    QApplication::setPalette(QPalette());
    const QPalette platform = QApplication::palette();
    const QPalette wanted = paletteFor(appearance_.colorScheme(), platform);
    if (wanted != platform)
        QApplication::setPalette(wanted);
}

} // namespace corvandi
