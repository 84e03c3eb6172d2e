#pragma once

#include "core/data/app_catalog.h"
#include "core/data/store.h"
#include "core/text/vocab_book.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

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

/// The vocabulary page of the settings: picks a scope, and edits the scope's replacement rules. Shows
/// copies of what the store holds, taken anew after each of its own changes.
///
/// Thread: main thread only. The store outlives it.
class VocabularyPane : public QObject {
    Q_OBJECT

public:
    explicit VocabularyPane(Store& store);

    [[nodiscard]] const VocabScope& scope() const { return scope_; }
    /// The applications that the user can choose as scope, in the store's order.
    [[nodiscard]] const std::vector<AppVocab>& apps() const { return apps_; }
    /// The rules of the scope.
    [[nodiscard]] const std::vector<VocabRule>& rules() const { return rules_; }
    /// The texts of the row that adds a rule.
    [[nodiscard]] const QString& newFrom() const { return newFrom_; }
    [[nodiscard]] const QString& newTo() const { return newTo_; }
    /// Whether one of them has nothing but spaces and tabs.
    [[nodiscard]] bool isAddDisabled() const;
    /// The application's name in the vocabulary; the identifier itself when it has no entry.
    [[nodiscard]] QString name(const QString& bundleID) const;
    /// What stands in the place of an empty list.
    [[nodiscard]] QString emptyDescription() const;

    /// Call both when the page is shown.
    void reloadApps();
    void reloadRules();

    void setScope(const VocabScope& scope);
    void setNewFrom(const QString& text);
    void setNewTo(const QString& text);
    /// Adds the new rule, its texts trimmed, to the scope; does nothing while `isAddDisabled`.
    void add();
    void update(const VocabRule& rule, const QString& from, const QString& to);
    void deleteRule(const VocabRule& rule);
    /// Positions in `rules`; those beyond its end are no rules.
    void deleteRulesAt(const std::vector<std::size_t>& positions);
    /// Makes the application the scope. An entry that it has already is kept as it is.
    void addApp(const AppInfo& app);
    /// Removes the scope's application with all its rules; does nothing in the global scope.
    void removeCurrentApp();

Q_SIGNALS:
    /// The scope, the applications or the rules.
    void changed();
    /// The texts of the row that adds a rule.
    void newRuleChanged();

private:
    void moveTo(const VocabScope& scope);

    Store& store_;
    VocabScope scope_ = vocab_scope::Global{};
    std::vector<AppVocab> apps_;
    std::vector<VocabRule> rules_;
    QString newFrom_;
    QString newTo_;
};

} // namespace corvandi
