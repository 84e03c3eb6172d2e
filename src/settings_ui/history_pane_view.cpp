#include "settings_ui/history_pane_view.h"

#include "settings_ui/appearing.h"
#include "settings_ui/kit/button.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/kit/empty_state.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QScrollBar>

#include <algorithm>

namespace corvandi {
namespace {

/// Fills the largest window some times over, and is made within a few milliseconds.
constexpr std::size_t rowsAtATime = 30;

QString translated(const char* text)
{
    return QCoreApplication::translate("HistoryPane", text);
}

} // namespace

HistoryPaneView::HistoryPaneView(HistoryPane& pane, QWidget* parent)
    : GroupedForm(parent)
    , pane_(pane)
    , limit_(rowsAtATime)
{
    addSearch();
    list_ = &addSection();
    addClear();
    connect(&pane_, &HistoryPane::changed, this, &HistoryPaneView::showState);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &HistoryPaneView::showMore);
    whenAppearing(*this, [this] { pane_.reload(); });
    showState();
}

HistoryPaneView::~HistoryPaneView() = default;

void HistoryPaneView::addSearch()
{
    search_ = &addSection();
    auto& field = kit::makeChild<kit::TextField>(*search_, Symbol::magnifyingglass);
    field.setPlaceholder(translated(QT_TRANSLATE_NOOP("HistoryPane", "Search History")));
    search_->addWidget(field);
    field.setText(pane_.query());
    connect(&field, &QLineEdit::textChanged, &pane_, [this](const QString& text) {
        limit_ = rowsAtATime;
        pane_.setQuery(text);
    });
}

void HistoryPaneView::addClear()
{
    clear_ = &addSection();
    auto& button = kit::makeChild<kit::Button>(
        *clear_, translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear History")), kit::ButtonRole::destructive);
    clear_->addWidget(button);
    connect(&button, &QPushButton::clicked, &pane_, &HistoryPane::askToClear);
}

void HistoryPaneView::showState()
{
    search_->setVisible(pane_.hasHistory());
    clear_->setVisible(pane_.hasHistory());
    showEntries();
    showEmptyState();
    showConfirmation();
}

void HistoryPaneView::showEntries()
{
    const std::size_t count = std::min(pane_.entries().size(), limit_);
    // Else each row that comes or goes would lay out all of them.
    QLayout& layout = *list_->card().layout();
    layout.setEnabled(false);
    for (std::size_t index = 0; index < count; ++index)
        row(index).setEntry(pane_.entries()[index]);
    for (std::size_t index = 0; index < rows_.size(); ++index)
        rows_[index]->setVisible(index < count);
    layout.setEnabled(true);
    layout.update();
}

HistoryRowView& HistoryPaneView::row(std::size_t index)
{
    if (index == rows_.size()) {
        auto& made = kit::makeChild<HistoryRowView>(list_->card());
        list_->card().addRow(made);
        connect(&made, &HistoryRowView::copyRequested, &pane_, [this, &made] { pane_.copy(made.entry()); });
        connect(&made, &HistoryRowView::deleteRequested, &pane_,
                [this, &made] { pane_.deleteEntry(made.entry()); });
        rows_.push_back(&made);
    }
    return *rows_[index];
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
    list_->card().addRow(*emptyState_);
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
    confirmation_ = std::make_unique<QMessageBox>(window());
    confirmation_->setText(translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear all history?")));
    confirmation_->setInformativeText(translated(QT_TRANSLATE_NOOP(
        "HistoryPane", "This permanently removes every saved transcript and can't be undone.")));
    const auto* clear = confirmation_->addButton(
        translated(QT_TRANSLATE_NOOP("HistoryPane", "Clear History")), QMessageBox::DestructiveRole);
    auto* cancel = confirmation_->addButton(translated(QT_TRANSLATE_NOOP("HistoryPane", "Cancel")),
                                            QMessageBox::RejectRole);
    confirmation_->setDefaultButton(cancel);
    confirmation_->setEscapeButton(cancel);
    connect(confirmation_.get(), &QDialog::finished, this, [this, clear] {
        if (confirmation_->clickedButton() == clear)
            pane_.clear();
        else
            pane_.cancel();
    });
    confirmation_->open();
}

void HistoryPaneView::showMore()
{
    const QScrollBar& bar = *verticalScrollBar();
    if (bar.value() + bar.pageStep() < bar.maximum() || limit_ >= pane_.entries().size())
        return;
    limit_ += rowsAtATime;
    showEntries();
}

} // namespace corvandi
