#include "views/kit/selectable_text.h"

#include "views/kit/child.h"
#include "views/kit/style.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace corvandi::kit {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("SelectableText", text);
}

} // namespace

SelectableText::SelectableText(QWidget* parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::ClickFocus);
    setCursor(Qt::IBeamCursor);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout_.setTextOption(option);
    layout_.setCacheEnabled(true);
}

void SelectableText::setText(const QString& text)
{
    if (text == text_)
        return;
    text_ = text;
    QString lines = text;
    // As many characters as before, so that positions are the same in both.
    layout_.setText(lines.replace(QLatin1Char('\n'), QChar::LineSeparator));
    layoutWidth_ = -1;
    clearSelection();
    updateGeometry();
    update();
}

QString SelectableText::selectedText() const
{
    return text_.mid(std::min(anchor_, end_), std::abs(end_ - anchor_));
}

void SelectableText::clearSelection()
{
    select(0, 0);
}

int SelectableText::heightForWidth(int width) const
{
    layOut(width);
    return static_cast<int>(std::ceil(layout_.boundingRect().height()));
}

QSize SelectableText::sizeHint() const
{
    return {width(), heightForWidth(width())};
}

void SelectableText::layOut(int width) const
{
    if (width == layoutWidth_)
        return;
    layoutWidth_ = width;
    layout_.setFont(font());
    layout_.beginLayout();
    qreal top = 0;
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, top});
        top += line.height() + lineGap;
    }
    layout_.endLayout();
}

void SelectableText::paintEvent(QPaintEvent* event)
{
    layOut(width());
    QList<QTextLayout::FormatRange> selections;
    if (anchor_ != end_) {
        QTextLayout::FormatRange selection{std::min(anchor_, end_), std::abs(end_ - anchor_), {}};
        selection.format.setBackground(palette().color(QPalette::Active, QPalette::Highlight));
        selection.format.setForeground(palette().color(QPalette::Active, QPalette::HighlightedText));
        selections.append(selection);
    }
    QPainter painter(this);
    painter.setPen(Colors::of(*this).text);
    layout_.draw(&painter, {}, selections, event->rect());
}

void SelectableText::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange)
        return;
    layoutWidth_ = -1;
    updateGeometry();
}

int SelectableText::positionAt(const QPointF& point) const
{
    layOut(width());
    for (int index = 0; index < layout_.lineCount(); ++index) {
        const QTextLine line = layout_.lineAt(index);
        if (point.y() < line.y() + line.height() + lineGap || index + 1 == layout_.lineCount())
            return line.xToCursor(point.x());
    }
    return 0;
}

void SelectableText::select(int anchor, int end)
{
    if (anchor == anchor_ && end == end_)
        return;
    anchor_ = anchor;
    end_ = end;
    update();
}

void SelectableText::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const int position = positionAt(event->position());
    select(event->modifiers() & Qt::ShiftModifier ? anchor_ : position, position);
}

void SelectableText::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        select(anchor_, positionAt(event->position()));
}

void SelectableText::mouseReleaseEvent(QMouseEvent*)
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (anchor_ != end_ && clipboard.supportsSelection())
        clipboard.setText(selectedText(), QClipboard::Selection);
}

void SelectableText::mouseDoubleClickEvent(QMouseEvent* event)
{
    const int position = positionAt(event->position());
    const int start = layout_.previousCursorPosition(std::min(position + 1, static_cast<int>(text_.size())),
                                                     QTextLayout::SkipWords);
    int end = layout_.nextCursorPosition(start, QTextLayout::SkipWords);
    while (end > start && text_[end - 1].isSpace())
        --end;
    select(start, end);
}

void SelectableText::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        return copySelection();
    if (event->matches(QKeySequence::SelectAll))
        return select(0, static_cast<int>(text_.size()));
    QWidget::keyPressEvent(event);
}

void SelectableText::contextMenuEvent(QContextMenuEvent* event)
{
    auto& menu = makeChild<QMenu>(*this);
    menu.setAttribute(Qt::WA_DeleteOnClose);
    menu.addAction(translated(QT_TRANSLATE_NOOP("SelectableText", "Copy")), this,
                   &SelectableText::copySelection)
        ->setEnabled(anchor_ != end_);
    menu.addAction(translated(QT_TRANSLATE_NOOP("SelectableText", "Select All")), this,
                   [this] { select(0, static_cast<int>(text_.size())); });
    menu.popup(event->globalPos());
}

void SelectableText::copySelection() const
{
    if (anchor_ != end_)
        QGuiApplication::clipboard()->setText(selectedText());
}

} // namespace corvandi::kit
