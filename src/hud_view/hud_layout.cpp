#include "hud_view/hud_layout.h"

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

constexpr qreal itemSpacing = 9;
constexpr qreal sidePadding = 14;
constexpr qreal verticalPadding = 7;

constexpr qreal dotSize = 7;
constexpr qreal spinnerSize = 14;
constexpr qreal symbolSize = 14;

constexpr qreal waveformHeight = 32;
constexpr qreal barWidth = 2.5;
constexpr qreal barSpacing = 2.5;
constexpr qreal fullBarHeight = 30;
constexpr qreal lowestBarHeight = 3;
constexpr qreal elapsedWidth = 32;

/// The next even number: what is centred in an area of even size then stands on whole points.
qreal roundedUpToEven(qreal length)
{
    return 2 * std::ceil(length / 2);
}

QRectF pillFor(const QSizeF& content, const QRectF& area)
{
    const QSizeF size(std::min(roundedUpToEven(content.width() + 2 * sidePadding), area.width()),
                      std::min(roundedUpToEven(content.height() + 2 * verticalPadding), area.height()));
    QRectF pill(QPointF(), size);
    pill.moveCenter(area.center());
    return pill;
}

/// The next item of a row: behind everything up to `x`, centred in the pill's height.
QRectF itemAt(qreal x, const QRectF& pill, const QSizeF& size)
{
    return {x, pill.center().y() - size.height() / 2, size.width(), size.height()};
}

qreal waveformWidth(size_t count)
{
    const auto bars = static_cast<qreal>(count);
    return bars * barWidth + std::max(bars - 1, 0.0) * barSpacing;
}

HudLayout layOutRecording(const HUDModel& model, const QFontMetricsF& font, const QRectF& area)
{
    const qreal waveform = waveformWidth(model.bars().size());
    const qreal slot = std::max(elapsedWidth, steadyWidth(font, model.elapsed()));
    HudLayout layout;
    layout.pill = pillFor({dotSize + itemSpacing + waveform + itemSpacing + slot, waveformHeight}, area);
    layout.symbol = itemAt(layout.pill.left() + sidePadding, layout.pill, {dotSize, dotSize});
    qreal x = layout.symbol.right() + itemSpacing;
    for (const double value : model.bars()) {
        const QSizeF size(barWidth, std::max(value * fullBarHeight, lowestBarHeight));
        layout.bars.push_back(itemAt(x, layout.pill, size));
        x += barWidth + barSpacing;
    }
    x += itemSpacing - barSpacing;
    layout.text = itemAt(x, layout.pill, {slot, font.height()});
    return layout;
}

HudLayout layOutStatus(const HUDModel& model, const QFontMetricsF& font, const QRectF& area)
{
    const qreal symbol = model.state() == HUDState::processing ? spinnerSize : symbolSize;
    const QString line = singleLine(model.statusText());
    HudLayout layout;
    if (line.isEmpty()) {
        layout.pill = pillFor({symbol, std::max(symbol, font.height())}, area);
        layout.symbol = itemAt(layout.pill.left() + sidePadding, layout.pill, {symbol, symbol});
        return layout;
    }
    const qreal lead = symbol + itemSpacing;
    const qreal text = std::ceil(font.horizontalAdvance(line));
    layout.pill = pillFor({lead + text, std::max(symbol, font.height())}, area);
    layout.symbol = itemAt(layout.pill.left() + sidePadding, layout.pill, {symbol, symbol});
    const qreal room = layout.pill.width() - 2 * sidePadding - lead;
    layout.text = itemAt(layout.symbol.right() + itemSpacing, layout.pill, {room, font.height()});
    return layout;
}

} // namespace

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

QString singleLine(const QString& text)
{
    return text.simplified();
}

HudLayout layOut(const HUDModel& model, const QFontMetricsF& font, const QRectF& area)
{
    switch (model.state()) {
    case HUDState::recording:
        return layOutRecording(model, font, area);
    case HUDState::processing:
    case HUDState::notice:
    case HUDState::error:
        return layOutStatus(model, font, area);
    }
    return {};
}

} // namespace corvandi
