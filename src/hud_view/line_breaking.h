#pragma once

#include <QFontMetricsF>
#include <QStringList>

namespace corvandi {

/// `text` in as few lines as it needs, two at most: one line up to the width `longest`, else two lines of
/// about the same width, broken where the language allows it. A line wider than `room` ends in an ellipsis.
/// No line when the text is empty.
[[nodiscard]] QStringList brokenIntoLines(const QString& text, const QFontMetricsF& font, qreal longest,
                                          qreal room);

} // namespace corvandi
