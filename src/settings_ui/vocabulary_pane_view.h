#pragma once

#include "panes/vocabulary_pane.h"
#include "settings_ui/kit/button.h"
#include "settings_ui/kit/grouped_form.h"
#include "settings_ui/kit/icon_button.h"
#include "settings_ui/kit/pop_up_button.h"
#include "settings_ui/replacement_row_view.h"

#include <functional>
#include <memory>
#include <vector>

namespace corvandi {

/// The page on which the replacement rules are edited, for all applications or for one.
///
/// The referees outlive it.
class VocabularyPaneView : public kit::GroupedForm {
    Q_OBJECT

public:
    using Picked = std::function<void(const AppInfo&)>;
    /// Lets the user pick one of all installed applications, over `parent`; calls `picked` if one was.
    using Browse = std::function<void(QWidget& parent, Picked picked)>;

    VocabularyPaneView(VocabularyPane& pane, const AppCatalog& catalog, Browse browse,
                       QWidget* parent = nullptr);
    ~VocabularyPaneView() override;

private:
    void addScope();
    void addNewRule();
    void addRemove();
    void offerApps();
    void showState();
    void showScopes();
    void showRules();
    void retire(ReplacementRowView& row);
    void showEmptyState();
    void showNewRule();
    [[nodiscard]] std::unique_ptr<ReplacementRowView> makeRow(const VocabRule& rule);

    VocabularyPane& pane_;
    const AppCatalog& catalog_;
    Browse browse_;
    kit::PopUpButton* scopes_ = nullptr;
    kit::IconButton* plus_ = nullptr;
    kit::FormSection* list_ = nullptr;
    kit::TextField* newFrom_ = nullptr;
    kit::TextField* newTo_ = nullptr;
    kit::Button* add_ = nullptr;
    kit::FormSection* removal_ = nullptr;
    kit::Button* remove_ = nullptr;
    std::vector<ReplacementRowView*> rows_;
    std::unique_ptr<QWidget> emptyState_;
    QString emptyText_;
};

} // namespace corvandi
