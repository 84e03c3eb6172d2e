#include "settings_ui/kit/colors.h"

#include "appearance/palettes.h"

namespace corvandi::kit {
namespace {

QColor translucent(QColor color, float opacity)
{
    color.setAlphaF(opacity);
    return color;
}

} // namespace

QColor mixed(const QColor& one, const QColor& other, float share)
{
    const auto mix = [share](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

Colors Colors::of(const QPalette& palette)
{
    const bool dark = isDark(palette);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor card = dark ? mixed(window, text, 0.055F) : palette.color(QPalette::Active, QPalette::Base);
    return {
        .window = window,
        .card = card,
        .cardEdge = mixed(window, text, dark ? 0.13F : 0.10F),
        .hairline = mixed(card, text, dark ? 0.13F : 0.10F),
        .text = text,
        .secondaryText = mixed(card, text, 0.66F),
        .disabledText = mixed(card, text, 0.42F),
        .accent = accent,
        .onAccent = palette.color(QPalette::Active, QPalette::HighlightedText),
        .positive = dark ? QColor(88, 204, 126) : QColor(28, 126, 60),
        .destructive = dark ? QColor(255, 122, 116) : QColor(196, 43, 38),
        .control = dark ? mixed(card, text, 0.12F) : card,
        .controlEdge = mixed(card, text, dark ? 0.24F : 0.20F),
        .hover = translucent(text, 0.05F),
        .pressed = translucent(text, 0.11F),
        .track = mixed(card, text, dark ? 0.34F : 0.30F),
    };
}

} // namespace corvandi::kit
