#include "hud_view/hud_colors.h"

namespace corvandi {
namespace {

constexpr float middleLightness = 0.5F;

HudColors darkColors()
{
    return {
        .fill = QColor(34, 35, 40, 232),
        .edge = QColor(255, 255, 255, 38),
        .primary = QColor(255, 255, 255, 235),
        .secondary = QColor(235, 235, 245, 170),
        .accent = {},
        .recording = QColor(255, 69, 58),
        .notice = QColor(48, 209, 88),
        .error = QColor(255, 159, 10),
        .onSymbol = QColor(24, 24, 28),
    };
}

HudColors lightColors()
{
    return {
        .fill = QColor(250, 250, 252, 240),
        .edge = QColor(0, 0, 0, 34),
        .primary = QColor(0, 0, 0, 220),
        .secondary = QColor(40, 40, 48, 180),
        .accent = {},
        .recording = QColor(233, 46, 37),
        .notice = QColor(36, 160, 66),
        .error = QColor(226, 118, 0),
        .onSymbol = QColor(255, 255, 255),
    };
}

} // namespace

HudColors HudColors::from(const QPalette& palette, HudBackdrop backdrop)
{
    const bool isDark = palette.color(QPalette::Window).lightnessF() < middleLightness;
    HudColors colors = isDark ? darkColors() : lightColors();
    colors.accent = palette.color(QPalette::Highlight);
    if (backdrop == HudBackdrop::opaque)
        colors.fill.setAlpha(255);
    return colors;
}

} // namespace corvandi
