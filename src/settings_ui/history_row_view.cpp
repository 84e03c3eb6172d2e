#include "settings_ui/history_row_view.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStyle>

#include <cmath>

namespace corvandi {
namespace {

using kit::metrics::rowMargin;
using kit::metrics::rowPadding;

constexpr int side = kit::IconButton::side;
constexpr int spacing = 4;
/// What is beside the text.
constexpr int buttonsWidth = 2 * (side + spacing) + rowPadding;
constexpr int narrowestText = 120;
/// Enough to tell one text from another.
constexpr qsizetype excerptLength = 60;

QString translated(const char* text)
{
    return QCoreApplication::translate("HistoryPane", text);
}

/// The beginning of a text, in one line.
QString excerpt(const QString& text)
{
    const QString line = text.left(2 * excerptLength).simplified();
    return line.size() <= excerptLength ? line : line.left(excerptLength) + QChar(0x2026);
}

QString spokenName(const QString& button, const QString& text)
{
    return QStringLiteral("%1, %2").arg(button, excerpt(text));
}

/// Above the text and below it, so that its first line stands beside the buttons.
int textPadding(const QFontMetrics& metrics)
{
    return rowPadding + qMax(0, (side - metrics.height()) / 2);
}

} // namespace

HistoryRowView::HistoryRowView(QWidget* parent)
    : ListRow(parent)
    , text_(kit::makeChild<kit::SelectableText>(*this))
    , copy_(kit::makeChild<kit::IconButton>(*this, Symbol::docOnDoc,
                                            translated(QT_TRANSLATE_NOOP("HistoryPane", "Copy")),
                                            kit::IconButtonRole::standard))
    , trash_(kit::makeChild<kit::IconButton>(*this, Symbol::trash,
                                             translated(QT_TRANSLATE_NOOP("HistoryPane", "Delete")),
                                             kit::IconButtonRole::destructive))
{
    addControl(copy_);
    addControl(trash_);
    connect(&copy_, &QAbstractButton::clicked, this, &HistoryRowView::copyRequested);
    connect(&trash_, &QAbstractButton::clicked, this, &HistoryRowView::deleteRequested);
}

void HistoryRowView::setEntry(const HistoryEntry& entry)
{
    if (entry == entry_)
        return;
    entry_ = entry;
    text_.setText(entry_.text);
    copy_.setAccessibleName(spokenName(copy_.toolTip(), entry_.text));
    trash_.setAccessibleName(spokenName(trash_.toolTip(), entry_.text));
}

int HistoryRowView::estimatedHeight(const QString& text, int width, const QFontMetrics& metrics)
{
    const int textWidth = qMax(narrowestText, width - rowMargin - buttonsWidth);
    const double lines = std::ceil(static_cast<double>(text.size()) * metrics.averageCharWidth() / textWidth);
    const int between = kit::SelectableText::lineGap;
    return 2 * textPadding(metrics) + static_cast<int>(qMax(1.0, lines)) * (metrics.height() + between) -
           between;
}

int HistoryRowView::heightForWidth(int width) const
{
    return 2 * textPadding(fontMetrics()) + text_.heightForWidth(width - rowMargin - buttonsWidth);
}

QSize HistoryRowView::minimumSizeHint() const
{
    return {rowMargin + narrowestText + buttonsWidth, side + 2 * rowPadding};
}

void HistoryRowView::leaveItem()
{
    text_.clearSelection();
}

void HistoryRowView::resizeEvent(QResizeEvent* event)
{
    ListRow::resizeEvent(event);
    const auto put = [this](QWidget& widget, const QRect& place) {
        widget.setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    };
    const int buttons = width() - buttonsWidth;
    const int padding = textPadding(fontMetrics());
    put(text_, {rowMargin, padding, buttons - rowMargin, height() - 2 * padding});
    put(copy_, {buttons + spacing, rowPadding, side, side});
    put(trash_, {buttons + side + 2 * spacing, rowPadding, side, side});
}

void HistoryRowView::keyPressEvent(QKeyEvent* event)
{
    if (!event->matches(QKeySequence::Copy))
        return ListRow::keyPressEvent(event);
    Q_EMIT copyRequested();
}

} // namespace corvandi
