#pragma once

#include "panes/history_pane.h"
#include "settings_ui/history_row_view.h"
#include "settings_ui/kit/grouped_form.h"
#include "settings_ui/kit/text_field.h"

#include <QMessageBox>

#include <memory>
#include <vector>

namespace corvandi {

/// The page with the saved transcripts. Of a long list, so many rows are made as have been scrolled to.
///
/// The pane outlives it.
class HistoryPaneView : public kit::GroupedForm {
    Q_OBJECT

public:
    explicit HistoryPaneView(HistoryPane& pane, QWidget* parent = nullptr);
    ~HistoryPaneView() override;

private:
    void addSearch();
    void addClear();
    void showState();
    void showEntries();
    void showEmptyState();
    void showConfirmation();
    void showMore();
    [[nodiscard]] HistoryRowView& row(std::size_t index);

    HistoryPane& pane_;
    kit::FormSection* search_ = nullptr;
    kit::FormSection* list_ = nullptr;
    kit::FormSection* clear_ = nullptr;
    std::vector<HistoryRowView*> rows_;
    std::size_t limit_;
    std::unique_ptr<QWidget> emptyState_;
    QString emptyText_;
    std::unique_ptr<QMessageBox> confirmation_;
};

} // namespace corvandi
