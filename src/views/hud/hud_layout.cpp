#include "views/hud/hud_layout.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace corvandi {

HUDFace HUDFace::of(const HUDModel& model)
{
    return {model.state(), model.bars(), model.elapsed(), model.statusText().simplified()};
}

bool HUDFace::differsInBarsOnly(const HUDFace& other) const
{
    return state == other.state && elapsed == other.elapsed && text == other.text;
}

namespace {

using Lines = std::pair<QString, QString>;

Lines brokenAt(const QString& text, qsizetype position)
{
    return {text.left(position).trimmed(), text.mid(position).trimmed()};
}

qreal wider(const Lines& lines, const QFontMetricsF& font)
{
    return std::max(font.horizontalAdvance(lines.first), font.horizontalAdvance(lines.second));
}

/// Broken so that the wider line is as narrow as possible; the second line is empty where nothing can be
/// broken.
Lines inTwo(const QString& text, const QFontMetricsF& font)
{
    Lines best{text, QString()};
    qreal narrowest = std::numeric_limits<qreal>::max();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, text);
    for (auto at = finder.toNextBoundary(); at > 0 && at < text.size(); at = finder.toNextBoundary()) {
        const Lines lines = brokenAt(text, at);
        if (const qreal width = wider(lines, font); width < narrowest) {
            narrowest = width;
            best = lines;
        }
    }
    return best;
}

} // namespace

QStringList brokenIntoLines(const QString& text, const QFontMetricsF& font, qreal longest, qreal room)
{
    if (text.isEmpty())
        return {};
    const auto fitting = [&](const QString& line) { return font.elidedText(line, Qt::ElideRight, room); };
    if (std::ceil(font.horizontalAdvance(text)) <= longest)
        return {text};
    const auto [first, second] = inTwo(text, font);
    if (second.isEmpty())
        return {fitting(first)};
    return {fitting(first), fitting(second)};
}

namespace {

constexpr qreal itemSpacing = 9;
constexpr qreal sidePadding = 14;
constexpr qreal verticalPadding = 7;

constexpr qreal dotSize = 7;
constexpr qreal spinnerSize = 14;
constexpr qreal symbolSize = 12;

constexpr qreal waveformHeight = 32;
constexpr qreal barWidth = 2.5;
constexpr qreal barSpacing = 2.5;
constexpr qreal fullBarHeight = 30;
constexpr qreal lowestBarHeight = 3;
constexpr qreal elapsedWidth = 32;

/// The next even number: what is centred on a whole point then has its edges on whole points.
qreal roundedUpToEven(qreal length)
{
    return 2 * std::ceil(length / 2);
}

QRectF centered(const QSizeF& size)
{
    return {-size.width() / 2, -size.height() / 2, size.width(), size.height()};
}

QRectF pillFor(const QSizeF& content)
{
    return centered({roundedUpToEven(content.width() + 2 * sidePadding),
                     roundedUpToEven(content.height() + 2 * verticalPadding)});
}

/// The next item of a row: from `x` on, vertically in the middle.
QRectF itemAt(qreal x, const QSizeF& size)
{
    return {x, -size.height() / 2, size.width(), size.height()};
}

qreal waveformWidth(size_t count)
{
    const auto bars = static_cast<qreal>(count);
    return bars * barWidth + std::max(bars - 1, 0.0) * barSpacing;
}

HUDLayout layOutRecording(const HUDFace& face, const QFontMetricsF& font)
{
    const qreal waveform = waveformWidth(face.bars.size());
    const qreal slot = std::max(elapsedWidth, std::ceil(steadyWidth(font, face.elapsed)));
    HUDLayout layout;
    layout.pill = pillFor({dotSize + itemSpacing + waveform + itemSpacing + slot, waveformHeight});
    layout.symbol = itemAt(layout.pill.left() + sidePadding, {dotSize, dotSize});
    layout.waveform = itemAt(layout.symbol.right() + itemSpacing, {waveform, waveformHeight});
    const qreal x = layout.waveform.right() + itemSpacing;
    layout.lines.push_back({face.elapsed, itemAt(x, {slot, font.height()})});
    return layout;
}

qreal widthOf(const QStringList& lines, const QFontMetricsF& font)
{
    qreal width = 0;
    for (const QString& line : lines)
        width = std::max(width, std::ceil(font.horizontalAdvance(line)));
    return width;
}

QSizeF rowSize(qreal symbol, const QSizeF& text)
{
    const qreal width = text.isEmpty() ? symbol : symbol + itemSpacing + text.width();
    return {width, std::max(symbol, text.height())};
}

HUDLayout layOutStatus(const HUDFace& face, const QFontMetricsF& font, qreal widest)
{
    const qreal symbol = face.state == HUDState::processing ? spinnerSize : symbolSize;
    const qreal room = widest - 2 * sidePadding - symbol - itemSpacing;
    const QStringList lines = brokenIntoLines(face.text, font, std::min(longestLine, room), room);
    const QSizeF text(widthOf(lines, font), static_cast<qreal>(lines.size()) * std::ceil(font.height()));
    HUDLayout layout;
    layout.pill = pillFor(rowSize(symbol, text));
    layout.symbol = itemAt(layout.pill.left() + sidePadding, {symbol, symbol});
    QRectF frame = itemAt(layout.symbol.right() + itemSpacing, text);
    frame.setHeight(std::ceil(font.height()));
    for (const QString& line : lines) {
        layout.lines.push_back({line, frame});
        frame.translate(0, frame.height());
    }
    return layout;
}

} // namespace

HUDLayout layOut(const HUDFace& face, const QFontMetricsF& font, qreal widest)
{
    switch (face.state) {
    case HUDState::recording:
        return layOutRecording(face, font);
    case HUDState::processing:
    case HUDState::notice:
    case HUDState::error:
        return layOutStatus(face, font, widest);
    }
    return {};
}

QRectF barFrame(const QRectF& waveform, size_t position, double value)
{
    const qreal x = waveform.left() + static_cast<qreal>(position) * (barWidth + barSpacing);
    return itemAt(x, {barWidth, std::max(value * fullBarHeight, lowestBarHeight)});
}

qreal digitCell(const QFontMetricsF& font)
{
    qreal widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit)
        widest = std::max(widest, font.horizontalAdvance(QLatin1Char(digit)));
    return widest;
}

qreal steadyWidth(const QFontMetricsF& font, const QString& text)
{
    qreal width = 0;
    for (const QChar character : text)
        width += character.isDigit() ? digitCell(font) : font.horizontalAdvance(character);
    return width;
}

} // namespace corvandi
