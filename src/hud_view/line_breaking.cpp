#include "hud_view/line_breaking.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace corvandi {
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

} // namespace corvandi
