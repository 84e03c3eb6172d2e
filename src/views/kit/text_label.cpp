#include "views/kit/text_label.h"

#include "views/kit/style.h"

#include <QApplication>
#include <QEvent>

namespace corvandi::kit {
namespace {

constexpr qreal captionSize = 0.88;
constexpr qreal titleSize = 1.3;
constexpr qreal largeTitleSize = 1.75;

QFont fontOf(TextStyle style, const QFont& base)
{
    switch (style) {
    case TextStyle::body:
    case TextStyle::secondary:
        return base;
    case TextStyle::rowTitle:
        return scaledFont(base, 1, QFont::Medium);
    case TextStyle::caption:
    case TextStyle::failure:
        return scaledFont(base, captionSize);
    case TextStyle::positive:
        return scaledFont(base, 1, QFont::Medium);
    case TextStyle::header:
        return scaledFont(base, 1, QFont::DemiBold);
    case TextStyle::title:
        return scaledFont(base, titleSize, QFont::DemiBold);
    case TextStyle::largeTitle:
        return scaledFont(base, largeTitleSize, QFont::Bold);
    }
    return base;
}

QColor colorOf(TextStyle style, const Colors& colors)
{
    switch (style) {
    case TextStyle::body:
    case TextStyle::rowTitle:
    case TextStyle::header:
    case TextStyle::title:
    case TextStyle::largeTitle:
        return colors.text;
    case TextStyle::caption:
    case TextStyle::secondary:
        return colors.secondaryText;
    case TextStyle::positive:
        return colors.positive;
    case TextStyle::failure:
        return colors.destructive;
    }
    return colors.text;
}

} // namespace

TextLabel::TextLabel(const QString& text, TextStyle style, QWidget* parent)
    : QLabel(text, parent)
    , style_(style)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    applyStyle();
}

void TextLabel::setTextStyle(TextStyle style)
{
    if (style == style_)
        return;
    style_ = style;
    applyStyle();
}

void TextLabel::setOptionalText(const QString& text)
{
    setText(text);
    setVisible(!text.isEmpty());
}

void TextLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::ApplicationFontChange:
        applyStyle();
        break;
    default:
        break;
    }
}

void TextLabel::applyStyle()
{
    if (isApplying_)
        return;
    isApplying_ = true;
    // The surroundings' palette: this label's own is what was made of it before.
    const QPalette around = parentWidget() ? parentWidget()->palette() : QApplication::palette();
    const Colors colors = Colors::of(around);
    QPalette own;
    own.setColor(QPalette::WindowText, colorOf(style_, colors));
    own.setColor(QPalette::Disabled, QPalette::WindowText, colors.disabledText);
    setPalette(own);
    setFont(fontOf(style_, QApplication::font()));
    isApplying_ = false;
}

} // namespace corvandi::kit
