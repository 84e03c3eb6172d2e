#include "settings_ui/kit/text_field.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"
#include "symbols/symbol_pixmap.h"

#include <QPainter>

namespace corvandi::kit {
namespace {

constexpr int symbolSize = 14;
constexpr int symbolGap = 6;
/// A line edit keeps so much clear on either side of its text, and a little more for letters that stick out.
constexpr int clearSides = 2;
constexpr int bearings = 2;
constexpr int padding = 7;

} // namespace

TextField::TextField(std::optional<Symbol> symbol, QWidget* parent)
    : QLineEdit(parent)
    , symbol_(symbol)
{
    setFrame(false);
    // The field is painted here, under the text.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
    setTextMargins(symbol_ ? padding + symbolSize + symbolGap : padding, 0, padding, 0);
}

QSize TextField::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {QLineEdit::sizeHint().width(), qMax(metrics::controlHeight, metrics.height() + 12)};
}

QSize TextField::minimumSizeHint() const
{
    const QMargins margins = textMargins();
    const int width =
        QFontMetrics(font()).horizontalAdvance(placeholderText()) + margins.left() + margins.right();
    return {qMax(QLineEdit::minimumSizeHint().width(), width + 2 * clearSides + bearings),
            sizeHint().height()};
}

void TextField::setPlaceholder(const QString& text)
{
    setPlaceholderText(text);
    updateGeometry();
    if (accessibleName().isEmpty())
        setAccessibleName(text);
}

void TextField::paintEvent(QPaintEvent* event)
{
    // Its own palette has a clear base.
    const Colors colors = Colors::of(parentWidget() ? *parentWidget() : *this);
    {
        QPainter painter(this);
        const QRectF frame(rect());
        paintPanel(painter, frame, metrics::controlRadius, colors.control, colors.controlEdge);
        if (hasFocus())
            paintFocusRing(painter, frame, metrics::controlRadius, colors.accent);
        if (symbol_) {
            const QSize size(symbolSize, symbolSize);
            const QRect place(QPoint(padding + clearSides, (height() - symbolSize) / 2), size);
            painter.drawPixmap(place,
                               symbolPixmap(*symbol_, size, colors.secondaryText, devicePixelRatioF()));
        }
    }
    QLineEdit::paintEvent(event);
}

} // namespace corvandi::kit
