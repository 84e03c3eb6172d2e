#include "shell/panes/history_pane.h"

#include <QCoreApplication>

#include <utility>

namespace corvandi {

HistoryPane::HistoryPane(Store& store, std::function<void(const QString&)> copyToClipboard)
    : store_(store)
    , copyToClipboard_(std::move(copyToClipboard))
{
}

QString HistoryPane::emptyTitle() const
{
    return query_.isEmpty() ? QCoreApplication::translate("HistoryPane", "No History")
                            : QCoreApplication::translate("HistoryPane", "No Matches");
}

QString HistoryPane::emptyDescription() const
{
    if (query_.isEmpty())
        return QCoreApplication::translate("HistoryPane", "Transcriptions you dictate will appear here.");
    return QCoreApplication::translate("HistoryPane", "No transcriptions match “%1”.").arg(query_);
}

void HistoryPane::reload()
{
    entries_ = query_.isEmpty() ? store_.listHistory() : store_.listHistory(query_);
    hasHistory_ = !store_.history().empty();
    Q_EMIT changed();
}

void HistoryPane::setQuery(const QString& query)
{
    if (query == query_)
        return;
    query_ = query;
    reload();
}

void HistoryPane::copy(const HistoryEntry& entry) const
{
    copyToClipboard_(entry.text);
}

void HistoryPane::deleteEntry(const HistoryEntry& entry)
{
    store_.deleteHistory(entry.id);
    reload();
}

void HistoryPane::askToClear()
{
    showClearConfirm_ = true;
    Q_EMIT changed();
}

void HistoryPane::clear()
{
    showClearConfirm_ = false;
    store_.clearHistory();
    reload();
}

void HistoryPane::cancel()
{
    showClearConfirm_ = false;
    Q_EMIT changed();
}

} // namespace corvandi
