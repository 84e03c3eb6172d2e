#pragma once

#include "base/date.h"

#include <QString>
#include <QUuid>

namespace corvandi {

/// One saved transcript: the final text of a dictation and when it happened.
struct HistoryEntry {
    /// Two entries with the same one are the same entry.
    QUuid id;
    QString text;
    Date date;

    friend bool operator==(const HistoryEntry&, const HistoryEntry&) = default;
};

} // namespace corvandi
