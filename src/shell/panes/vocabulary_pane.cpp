#include "shell/panes/vocabulary_pane.h"

#include "core/text/unicode.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace corvandi {

ReplacementRow::ReplacementRow(VocabRule rule, Commit onCommit, std::function<void()> onDelete)
    : rule_(std::move(rule))
    , from_(rule_.from)
    , to_(rule_.to)
    , onCommit_(std::move(onCommit))
    , onDelete_(std::move(onDelete))
{
}

void ReplacementRow::setFocused(std::optional<Field> field)
{
    const bool hadFocus = std::exchange(focused_, field).has_value();
    if (hadFocus && !field)
        commit();
}

void ReplacementRow::commit()
{
    from_ = trimmedOfSpacesAndTabs(from_);
    to_ = trimmedOfSpacesAndTabs(to_);
    if (from_.isEmpty() || to_.isEmpty()) {
        from_ = rule_.from;
        to_ = rule_.to;
        return;
    }
    if (from_ == rule_.from && to_ == rule_.to)
        return;
    // Copies, as the row may go with the call.
    const Commit onCommit = onCommit_;
    const QString from = from_;
    const QString to = to_;
    onCommit(from, to);
}

void ReplacementRow::deleteRule() const
{
    const auto onDelete = onDelete_;
    onDelete();
}

VocabularyPane::VocabularyPane(Store& store)
    : store_(store)
{
}

bool VocabularyPane::isAddDisabled() const
{
    return trimmedOfSpacesAndTabs(newFrom_).isEmpty() || trimmedOfSpacesAndTabs(newTo_).isEmpty();
}

QString VocabularyPane::name(const QString& bundleID) const
{
    const auto found = std::find_if(apps_.begin(), apps_.end(),
                                    [&](const AppVocab& app) { return app.bundleID == bundleID; });
    return found == apps_.end() ? bundleID : found->name;
}

QString VocabularyPane::emptyDescription() const
{
    if (const auto* app = std::get_if<vocab_scope::App>(&scope_)) {
        return QCoreApplication::translate("VocabularyPane", "Add a replacement that only applies in %1.")
            .arg(name(app->bundleID));
    }
    return QCoreApplication::translate("VocabularyPane", "Add a word you say and what it should become.");
}

void VocabularyPane::reloadApps()
{
    apps_ = store_.vocabBook().apps;
    Q_EMIT changed();
}

void VocabularyPane::reloadRules()
{
    rules_ = store_.rules(scope_);
    Q_EMIT changed();
}

void VocabularyPane::setScope(const VocabScope& scope)
{
    if (scope == scope_)
        return;
    moveTo(scope);
    Q_EMIT changed();
}

void VocabularyPane::setNewFrom(const QString& text)
{
    if (text == newFrom_)
        return;
    newFrom_ = text;
    Q_EMIT newRuleChanged();
}

void VocabularyPane::setNewTo(const QString& text)
{
    if (text == newTo_)
        return;
    newTo_ = text;
    Q_EMIT newRuleChanged();
}

void VocabularyPane::add()
{
    if (isAddDisabled())
        return;
    store_.addVocab(trimmedOfSpacesAndTabs(newFrom_), trimmedOfSpacesAndTabs(newTo_), scope_);
    newFrom_.clear();
    newTo_.clear();
    Q_EMIT newRuleChanged();
    reloadRules();
}

void VocabularyPane::update(const VocabRule& rule, const QString& from, const QString& to)
{
    store_.updateVocab(rule.id, from, to, scope_);
    reloadRules();
}

void VocabularyPane::deleteRule(const VocabRule& rule)
{
    store_.deleteVocab(rule.id, scope_);
    reloadRules();
}

void VocabularyPane::deleteRulesAt(const std::vector<std::size_t>& positions)
{
    for (const std::size_t position : positions) {
        // The positions are those before any of them has gone: the list is read anew at the end.
        if (position < rules_.size())
            store_.deleteVocab(rules_[position].id, scope_);
    }
    reloadRules();
}

void VocabularyPane::addApp(const AppInfo& app)
{
    store_.addApp(app.bundleID, app.name);
    moveTo(vocab_scope::App{app.bundleID});
    reloadApps();
}

void VocabularyPane::removeCurrentApp()
{
    const auto* app = std::get_if<vocab_scope::App>(&scope_);
    if (!app)
        return;
    store_.removeApp(app->bundleID);
    moveTo(vocab_scope::Global{});
    reloadApps();
}

void VocabularyPane::moveTo(const VocabScope& scope)
{
    scope_ = scope;
    rules_ = store_.rules(scope_);
}

} // namespace corvandi
