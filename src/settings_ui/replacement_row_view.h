#pragma once

#include "panes/replacement_row.h"
#include "settings_ui/kit/text_field.h"

#include <QWidget>

namespace corvandi {

/// One rule with fields for its texts and a button that deletes it.
class ReplacementRowView : public QWidget {
    Q_OBJECT

public:
    ReplacementRowView(const VocabRule& rule, const ReplacementRow::Commit& onCommit,
                       const std::function<void()>& onDelete, QWidget* parent = nullptr);

    [[nodiscard]] const VocabRule& rule() const { return row_.rule(); }
    void setRule(const VocabRule& rule) { row_.setRule(rule); }

private:
    void focusChanged(const QWidget* now);
    void commit();
    void showTexts();

    ReplacementRow row_;
    kit::TextField& from_;
    kit::TextField& to_;
};

} // namespace corvandi
