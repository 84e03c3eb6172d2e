#pragma once

#include "settings_ui/kit/icon_button.h"
#include "settings_ui/kit/list_row.h"
#include "settings_ui/kit/selectable_text.h"
#include "storage/history_entry.h"

namespace corvandi {

/// One transcript: its text, which can be selected, and buttons to copy and to delete it.
class HistoryRowView : public kit::ListRow {
    Q_OBJECT

public:
    explicit HistoryRowView(QWidget* parent = nullptr);

    [[nodiscard]] const HistoryEntry& entry() const { return entry_; }
    void setEntry(const HistoryEntry& entry);
    /// About how high a row for this text is.
    [[nodiscard]] static int estimatedHeight(const QString& text, int width, const QFontMetrics& metrics);

    [[nodiscard]] QString spokenText() const override { return entry_.text; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    void leaveItem() override;

Q_SIGNALS:
    void copyRequested();
    void deleteRequested();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    HistoryEntry entry_;
    kit::SelectableText& text_;
    kit::IconButton& copy_;
    kit::IconButton& trash_;
};

} // namespace corvandi
