#pragma once

#include "text/vocab_rule.h"

#include <QString>

#include <functional>
#include <optional>

namespace corvandi {

/// One rule of the vocabulary while it is edited in place. It can't be emptied that way: texts of nothing
/// but spaces and tabs give way to the stored ones.
///
/// Thread: main thread only.
class ReplacementRow {
public:
    enum class Field { from, to };
    using Commit = std::function<void(const QString& from, const QString& to)>;

    /// `onCommit` gets new texts, trimmed; `onDelete` is what the row's button does. The row may be
    /// destroyed by either.
    ReplacementRow(VocabRule rule, Commit onCommit, std::function<void()> onDelete);

    /// The rule as stored.
    [[nodiscard]] const VocabRule& rule() const { return rule_; }
    /// After a commit: what is stored now. What is being typed stays.
    void setRule(const VocabRule& rule) { rule_ = rule; }

    [[nodiscard]] const QString& from() const { return from_; }
    [[nodiscard]] const QString& to() const { return to_; }
    void setFrom(const QString& text) { from_ = text; }
    void setTo(const QString& text) { to_ = text; }
    /// The field with the keyboard focus, if any. Commits when the focus has left both.
    void setFocused(std::optional<Field> field);
    /// Trims the texts and hands them on if they differ from the stored ones. For the return key, too.
    void commit();
    void deleteRule() const;

private:
    VocabRule rule_;
    QString from_;
    QString to_;
    Commit onCommit_;
    std::function<void()> onDelete_;
    std::optional<Field> focused_;
};

} // namespace corvandi
