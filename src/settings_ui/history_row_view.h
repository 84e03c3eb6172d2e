#pragma once

#include "settings_ui/kit/text_label.h"
#include "storage/history_entry.h"

#include <QWidget>

namespace corvandi {

/// One transcript: its text, which can be selected, and buttons to copy and to delete it. Shows one entry
/// after another.
class HistoryRowView : public QWidget {
    Q_OBJECT

public:
    explicit HistoryRowView(QWidget* parent = nullptr);

    [[nodiscard]] const HistoryEntry& entry() const { return entry_; }
    void setEntry(const HistoryEntry& entry);

Q_SIGNALS:
    void copyRequested();
    void deleteRequested();

private:
    HistoryEntry entry_;
    kit::TextLabel& text_;
};

} // namespace corvandi
