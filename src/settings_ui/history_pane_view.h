#pragma once

#include "panes/history_pane.h"
#include "settings_ui/history_row_view.h"
#include "settings_ui/kit/grouped_form.h"
#include "settings_ui/kit/message_dialog.h"
#include "settings_ui/kit/text_field.h"
#include "settings_ui/kit/virtual_list.h"

#include <memory>

namespace corvandi {

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
