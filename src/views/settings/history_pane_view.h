#pragma once

#include "core/data/history.h"
#include "shell/panes/history_pane.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/form.h"
#include "views/kit/list_row.h"
#include "views/kit/message_dialog.h"
#include "views/kit/selectable_text.h"
#include "views/kit/virtual_list.h"

#include <memory>

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

/// The page with the saved transcripts.
///
/// The pane outlives it.
class HistoryPaneView : public kit::GroupedForm, private kit::ListContent {
    Q_OBJECT

public:
    explicit HistoryPaneView(HistoryPane& pane, QWidget* parent = nullptr);
    ~HistoryPaneView() override;

private:
    [[nodiscard]] std::size_t count() const override;
    [[nodiscard]] QUuid idAt(std::size_t index) const override;
    [[nodiscard]] int estimatedHeight(std::size_t index, int width) const override;
    [[nodiscard]] std::unique_ptr<kit::ListRow> makeRow() override;
    void showItem(kit::ListRow& row, std::size_t index) override;

    void addSearch();
    void addList();
    void addClear();
    void showState();
    void showEmptyState();
    void showConfirmation();

    HistoryPane& pane_;
    kit::FormSection* search_ = nullptr;
    kit::TextField* field_ = nullptr;
    kit::FormSection* section_ = nullptr;
    kit::VirtualList* list_ = nullptr;
    kit::FormSection* clear_ = nullptr;
    std::unique_ptr<QWidget> emptyState_;
    QString emptyText_;
    std::unique_ptr<kit::MessageDialog> confirmation_;
};

} // namespace corvandi
