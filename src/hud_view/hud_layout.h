#pragma once

#include "hud_view/hud_face.h"

#include <QFontMetricsF>
#include <QRectF>

#include <vector>

namespace corvandi {

/// One line of text and its place.
struct HudLine {
    QString text;
    QRectF frame;
};

/// Where the parts of a face stand, around the middle of the capsule. All lengths are points, which are
/// logical pixels.
struct HudLayout {
    /// The capsule around everything; its width and height are even numbers.
    QRectF pill;
    /// The recording dot, the spinner or the symbol.
    QRectF symbol;
    /// The meter's frame; empty on the other faces.
    QRectF waveform;
    /// The elapsed time, or the status text in one or two lines.
    std::vector<HudLine> lines;
};

/// A status text that is wider than this becomes two lines of about the same width.
inline constexpr qreal longestLine = 360;

/// Lays a face out. The capsule grows with its text up to the width `widest`; what does not even fit there
/// in two lines is cut off with an ellipsis.
[[nodiscard]] HudLayout layOut(const HudFace& face, const QFontMetricsF& font, qreal widest);

/// The frame of one bar of the meter: its height is a value 0...1, its place counts from the oldest.
[[nodiscard]] QRectF barFrame(const QRectF& waveform, size_t position, double value);

/// The width of one character cell in a text whose digits shall not jump when they change.
[[nodiscard]] qreal digitCell(const QFontMetricsF& font);
/// The width of such a text.
[[nodiscard]] qreal steadyWidth(const QFontMetricsF& font, const QString& text);

} // namespace corvandi
