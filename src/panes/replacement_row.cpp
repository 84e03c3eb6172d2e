#include "panes/replacement_row.h"

#include "text/trimming.h"

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

} // namespace corvandi
