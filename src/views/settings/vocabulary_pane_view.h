#pragma once

#include "shell/panes/vocabulary_pane.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/form.h"
#include "views/kit/virtual_list.h"
#include "views/settings/app_chooser.h"

#include <functional>
#include <memory>
#include <vector>

namespace corvandi {

/// The page on which the replacement rules are edited, for all applications or for one.
///
/// The referees outlive it.
class VocabularyPaneView : public kit::GroupedForm, private kit::ListContent {
    Q_OBJECT

public:
    using Picked = std::function<void(const AppInfo&)>;
    /// Lets the user pick one of all installed applications, over `parent`; calls `picked` if one was.
    using Browse = std::function<void(QWidget& parent, Picked picked)>;

    VocabularyPaneView(VocabularyPane& pane, const AppCatalog& catalog, Browse browse,
                       QWidget* parent = nullptr);
    ~VocabularyPaneView() override;

private:
    [[nodiscard]] std::size_t count() const override;
    [[nodiscard]] QUuid idAt(std::size_t index) const override;
    [[nodiscard]] int estimatedHeight(std::size_t index, int width) const override;
    [[nodiscard]] std::unique_ptr<kit::ListRow> makeRow() override;
    void showItem(kit::ListRow& row, std::size_t index) override;

    void addScope();
    void addRules();
    void addNewRule();
    void addRemove();
    void offerApps();
    void addRule();
    void deleteRuleAt(std::size_t index);
    void showState();
    void showScopes();
    void showEmptyState();
    void showNewRule();

    VocabularyPane& pane_;
    const AppCatalog& catalog_;
    Browse browse_;
    kit::PopUpButton* scopes_ = nullptr;
    kit::IconButton* plus_ = nullptr;
    AppIcons* icons_ = nullptr;
    /// What the pop-up button offers.
    std::vector<AppVocab> apps_;
    kit::FormSection* section_ = nullptr;
    kit::VirtualList* list_ = nullptr;
    kit::TextField* newFrom_ = nullptr;
    kit::TextField* newTo_ = nullptr;
    kit::Button* add_ = nullptr;
    kit::FormSection* removal_ = nullptr;
    kit::Button* remove_ = nullptr;
    std::unique_ptr<QWidget> emptyState_;
    QString emptyText_;
};

} // namespace corvandi
