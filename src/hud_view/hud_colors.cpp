#include "hud_view/hud_colors.h"

namespace corvandi {
namespace {

constexpr float middleLightness = 0.5F;

HudColors darkColors()
{
    return {
        .fillTop = QColor(54, 55, 61, 236),
        .fillBottom = QColor(36, 37, 42, 236),
        .outline = QColor(0, 0, 0, 96),
        .rimTop = QColor(255, 255, 255, 64),
        .rimBottom = QColor(255, 255, 255, 20),
        .primary = QColor(255, 255, 255, 235),
        .secondary = QColor(235, 235, 245, 170),
        .accent = {},
        .recording = QColor(255, 69, 58),
        .notice = QColor(48, 209, 88),
        .error = QColor(255, 159, 10),
    };
}

HudColors lightColors()
{
    return {
        .fillTop = QColor(255, 255, 255, 242),
        .fillBottom = QColor(244, 244, 248, 238),
        .outline = QColor(0, 0, 0, 36),
        .rimTop = QColor(255, 255, 255, 255),
        .rimBottom = QColor(255, 255, 255, 90),
        .primary = QColor(0, 0, 0, 220),
        .secondary = QColor(40, 40, 48, 180),
        .accent = {},
        .recording = QColor(233, 46, 37),
        .notice = QColor(36, 160, 66),
        .error = QColor(226, 118, 0),
    };
}

} // namespace

HudColors HudColors::from(const QPalette& palette, HudBackdrop backdrop)
{
    const bool isDark = palette.color(QPalette::Window).lightnessF() < middleLightness;
    HudColors colors = isDark ? darkColors() : lightColors();
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    if (backdrop == HudBackdrop::opaque) {
        colors.fillTop.setAlpha(255);
        colors.fillBottom.setAlpha(255);
    }
    return colors;
}

} // namespace corvandi
