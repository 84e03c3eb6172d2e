#pragma once

#include "core/data/store.h"

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace corvandi {

/// The history page of the settings: lists, searches, copies and deletes saved transcripts. Shows a copy
/// of what the store holds, which `reload` takes anew.
///
/// Thread: main thread only. The store outlives it.
class HistoryPane : public QObject {
    Q_OBJECT

public:
    HistoryPane(Store& store, std::function<void(const QString&)> copyToClipboard);

    [[nodiscard]] const QString& query() const { return query_; }
    /// What matches the query, newest first.
    [[nodiscard]] const std::vector<HistoryEntry>& entries() const { return entries_; }
    /// Whether there is any entry at all: without one there is nothing to search or to clear.
    [[nodiscard]] bool hasHistory() const { return hasHistory_; }
    /// Whether the user is being asked if everything is to be cleared.
    [[nodiscard]] bool showClearConfirm() const { return showClearConfirm_; }
    /// What stands in the place of an empty list.
    [[nodiscard]] QString emptyTitle() const;
    [[nodiscard]] QString emptyDescription() const;

    /// Call it when the page is shown.
    void reload();
    void setQuery(const QString& query);
    void copy(const HistoryEntry& entry) const;
    void deleteEntry(const HistoryEntry& entry);
    /// Asks the user first; `clear` and `cancel` are the two answers.
    void askToClear();
    void clear();
    void cancel();

Q_SIGNALS:
    void changed();

private:
    Store& store_;
    std::function<void(const QString&)> copyToClipboard_;
    QString query_;
    std::vector<HistoryEntry> entries_;
    bool hasHistory_ = false;
    bool showClearConfirm_ = false;
};

} // namespace corvandi
