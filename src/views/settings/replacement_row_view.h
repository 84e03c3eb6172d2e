#pragma once

#include "shell/panes/vocabulary_pane.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/list_row.h"

#include <functional>
#include <optional>

namespace corvandi {

/// One rule with fields for its texts and a button that deletes it, which its menu does, too.
class ReplacementRowView : public kit::ListRow {
    Q_OBJECT

public:
    /// Gets the new texts of a rule, trimmed.
    using Commit = std::function<void(const VocabRule& rule, const QString& from, const QString& to)>;

    explicit ReplacementRowView(Commit commit, QWidget* parent = nullptr);

    [[nodiscard]] const std::optional<ReplacementRow>& model() const { return row_; }
    /// What is being typed stays while it is the same rule.
    void setRule(const VocabRule& rule);

    [[nodiscard]] QString spokenText() const override;
    [[nodiscard]] int heightForWidth(int width) const override;
    void leaveItem() override { row_.reset(); }
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void deleteRequested();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    [[nodiscard]] std::optional<ReplacementRow::Field> focusedField() const;
    void focusChanged();
    void commit();
    void showTexts();

    Commit commit_;
    /// Nothing while the row is not in use.
    std::optional<ReplacementRow> row_;
    kit::TextField& from_;
    kit::TextField& to_;
    kit::IconButton& trash_;
};

} // namespace corvandi
