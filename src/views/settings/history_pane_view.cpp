#include "views/settings/history_pane_view.h"

#include "views/kit/button.h"
#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/settings/managed_widget_windows.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>
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

HistoryPaneView::HistoryPaneView(HistoryPane& pane, QWidget* parent)
    : GroupedForm(parent)
    , pane_(pane)
{
    addSearch();
    addList();
    addClear();
    connect(&pane_, &HistoryPane::changed, this, &HistoryPaneView::showState);
    whenAppearing(*this, [this] { pane_.reload(); });
    showState();
}

HistoryPaneView::~HistoryPaneView() = default;

void HistoryPaneView::addSearch()
{
    search_ = &addSection();
    field_ = &kit::makeChild<kit::TextField>(*search_, Symbol::magnifyingglass);
    field_->setPlaceholder(translated(QT_TRANSLATE_NOOP("HistoryPane", "Search History")));
    search_->addWidget(*field_);
    field_->setText(pane_.query());
    connect(field_, &QLineEdit::textChanged, &pane_, &HistoryPane::setQuery);
}

void HistoryPaneView::addList()
{
    section_ = &addSection();
    list_ = &kit::makeChild<kit::VirtualList>(section_->card(), static_cast<kit::ListContent&>(*this), *this);
    list_->setAccessibleName(translated(QT_TRANSLATE_NOOP("HistoryPane", "History")));
    list_->setFallbackFocus(*field_);
    section_->card().addRow(*list_);
    connect(list_, &kit::VirtualList::deleteRequested, &pane_,
            [this](std::size_t index) { pane_.deleteEntry(pane_.entries().at(index)); });
}

void HistoryPaneView::addClear()
{
    clear_ = &addSection();
    auto& button = kit::makeChild<kit::Button>(
        *clear_, translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear History")), kit::ButtonRole::destructive);
    clear_->addWidget(button);
    connect(&button, &QPushButton::clicked, &pane_, &HistoryPane::askToClear);
}

std::size_t HistoryPaneView::count() const
{
    return pane_.entries().size();
}

QUuid HistoryPaneView::idAt(std::size_t index) const
{
    return pane_.entries()[index].id;
}

int HistoryPaneView::estimatedHeight(std::size_t index, int width) const
{
    return HistoryRowView::estimatedHeight(pane_.entries()[index].text, width, fontMetrics());
}

std::unique_ptr<kit::ListRow> HistoryPaneView::makeRow()
{
    auto made = std::make_unique<HistoryRowView>();
    const HistoryRowView* row = made.get();
    connect(row, &HistoryRowView::copyRequested, &pane_, [this, row] { pane_.copy(row->entry()); });
    connect(row, &HistoryRowView::deleteRequested, &pane_, [this, row] {
        const HistoryEntry entry = row->entry();
        pane_.deleteEntry(entry);
    });
    return made;
}

void HistoryPaneView::showItem(kit::ListRow& row, std::size_t index)
{
    static_cast<HistoryRowView&>(row).setEntry(pane_.entries()[index]);
}

void HistoryPaneView::showState()
{
    search_->setVisible(pane_.hasHistory());
    clear_->setVisible(pane_.hasHistory());
    list_->reload();
    list_->setVisible(!pane_.entries().empty());
    showEmptyState();
    showConfirmation();
}

void HistoryPaneView::showEmptyState()
{
    const QString text = pane_.entries().empty() ? pane_.emptyTitle() + pane_.emptyDescription() : QString();
    if (text == emptyText_)
        return;
    emptyText_ = text;
    emptyState_.reset();
    if (text.isEmpty())
        return;
    emptyState_ =
        std::make_unique<kit::EmptyState>(Symbol::clock, pane_.emptyTitle(), pane_.emptyDescription());
    section_->card().addRow(*emptyState_);
    emptyState_->show();
}

void HistoryPaneView::showConfirmation()
{
    if (pane_.showClearConfirm() == static_cast<bool>(confirmation_))
        return;
    if (!pane_.showClearConfirm()) {
        // It may be in the middle of telling its answer.
        confirmation_.release()->deleteLater();
        return;
    }
    confirmation_ = std::make_unique<kit::MessageDialog>(
        translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear all history?")),
        translated(QT_TRANSLATE_NOOP("HistoryPane",
                                     "This permanently removes every saved transcript and can't be undone.")),
        window());
    auto& cancel = confirmation_->addButton(translated(QT_TRANSLATE_NOOP("HistoryPane", "Cancel")),
                                            QDialog::Rejected, kit::ButtonRole::standard);
    confirmation_->addButton(translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear History")), QDialog::Accepted,
                             kit::ButtonRole::destructive);
    confirmation_->setDefaultButton(cancel);
    connect(confirmation_.get(), &QDialog::finished, &pane_, [this](int result) {
        if (result == QDialog::Accepted)
            pane_.clear();
        else
            pane_.cancel();
    });
    confirmation_->open();
}

} // namespace corvandi
