#include "settings_ui/history_pane_view.h"

#include "settings_ui/appearing.h"
#include "settings_ui/kit/button.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/kit/empty_state.h"

#include <QCoreApplication>
#include <QPushButton>

namespace corvandi {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("HistoryPane", text);
}

} // namespace

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
