#pragma once

#include "core/hud/hud_model.h"

#include <QFontMetricsF>
#include <QRectF>
#include <QStringList>

#include <vector>

namespace corvandi {

/// What a HUD model shows at one moment, for faces that fade out while the model has gone on.
struct HUDFace {
    HUDState state = HUDState::processing;
    std::vector<double> bars;
    QString elapsed;
    /// The status text without line breaks.
    QString text;

    [[nodiscard]] static HUDFace of(const HUDModel& model);
    /// Whether `other` shows the same but for its bars.
    [[nodiscard]] bool differsInBarsOnly(const HUDFace& other) const;
};

/// `text` in as few lines as it needs, two at most: one line up to the width `longest`, else two lines of
/// about the same width, broken where the language allows it. A line wider than `room` ends in an ellipsis.
/// No line when the text is empty.
[[nodiscard]] QStringList brokenIntoLines(const QString& text, const QFontMetricsF& font, qreal longest,
                                          qreal room);

/// One line of text and its place.
struct HUDLine {
    QString text;
    QRectF frame;
};

/// Where the parts of a face stand, around the middle of the capsule. All lengths are points, which are
/// logical pixels.
struct HUDLayout {
    /// The capsule around everything; its width and height are even numbers.
    QRectF pill;
    /// The recording dot, the spinner or the symbol.
    QRectF symbol;
    /// The meter's frame; empty on the other faces.
    QRectF waveform;
    /// The elapsed time, or the status text in one or two lines.
    std::vector<HUDLine> lines;
};

/// A status text that is wider than this becomes two lines of about the same width.
inline constexpr qreal longestLine = 360;

/// Lays a face out. The capsule grows with its text up to the width `widest`; what does not even fit there
/// in two lines is cut off with an ellipsis.
[[nodiscard]] HUDLayout layOut(const HUDFace& face, const QFontMetricsF& font, qreal widest);

/// The frame of one bar of the meter: its height is a value 0...1, its place counts from the oldest.
[[nodiscard]] QRectF barFrame(const QRectF& waveform, size_t position, double value);

/// The width of one character cell in a text whose digits shall not jump when they change.
[[nodiscard]] qreal digitCell(const QFontMetricsF& font);
/// The width of such a text.
[[nodiscard]] qreal steadyWidth(const QFontMetricsF& font, const QString& text);

} // namespace corvandi
