#include "system/accessibility/focus_search.h"

#include <utility>

namespace corvandi {
namespace {

/// Nothing that a person can see is nested deeper; it also ends a tree that contains itself.
constexpr int depthLimit = 40;

/// Some toolkits create an object for each row of a table when they are asked for them.
constexpr int childLimit = 500;

/// Roots are at depth 0 and windows at depth 1. Neither is ever the focused element, although some
/// toolkits give a window that state, and the visibility that they report is not reliable.
constexpr int windowDepth = 1;

struct Survey {
    ObjectRef object;
    AccessibleStates states;
    int childCount = 0;
};

/// What can be told of those objects that still answer.
QList<Survey> surveyAll(BusReader& reader, const QList<ObjectRef>& objects, const QDeadlineTimer& deadline)
{
    std::vector<QDBusMessage> calls;
    for (const ObjectRef& object : objects) {
        calls.push_back(askStates(object));
        calls.push_back(askChildCount(object));
    }
    const std::vector<QDBusMessage> replies = reader.ask(calls, deadline);
    QList<Survey> surveys;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        const size_t first = 2 * static_cast<size_t>(i);
        if (const auto states = statesIn(replies[first]))
            surveys.append({objects[i], *states, childCountIn(replies[first + 1])});
    }
    return surveys;
}

bool isWorthOpening(const Survey& survey, int depth, SearchedWindows windows)
{
    if (survey.childCount <= 0)
        return false;
    if (depth < windowDepth)
        return true;
    if (depth == windowDepth)
        return windows == SearchedWindows::all || survey.states.has(AccessibleState::active);
    return survey.states.has(AccessibleState::visible) &&
           !survey.states.has(AccessibleState::managesDescendants) && survey.childCount <= childLimit;
}

QList<ObjectRef> openAll(BusReader& reader, const QList<ObjectRef>& objects, const QDeadlineTimer& deadline)
{
    std::vector<QDBusMessage> calls;
    for (const ObjectRef& object : objects)
        calls.push_back(askChildren(object));
    const std::vector<QDBusMessage> replies = reader.ask(calls, deadline);
    QList<ObjectRef> children;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        for (const ObjectRef& child : childrenIn(replies[static_cast<size_t>(i)])) {
            if (child.bus == objects[i].bus)
                children.append(child);
        }
    }
    return children;
}

/// The first ones of their kind that say that they have the focus.
struct Focused {
    std::optional<Survey> element;
    std::optional<Survey> documentToRead;
};

Focused focusedOf(BusReader& reader, const QList<Survey>& level, const QDeadlineTimer& deadline)
{
    QList<Survey> candidates;
    std::vector<QDBusMessage> calls;
    for (const Survey& survey : level) {
        if (!survey.states.has(AccessibleState::focused))
            continue;
        candidates.append(survey);
        calls.push_back(askRole(survey.object));
    }
    const std::vector<QDBusMessage> replies = reader.ask(calls, deadline);
    Focused found;
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        const uint32_t role = numberIn(replies[static_cast<size_t>(i)]).value_or(0);
        auto& place = isDocumentToRead(role, candidates[i].states) ? found.documentToRead : found.element;
        if (!place)
            place = candidates[i];
    }
    return found;
}

} // namespace

std::optional<ObjectRef> findFocused(BusReader& reader, const QList<ObjectRef>& roots,
                                     SearchedWindows windows, const QDeadlineTimer& deadline)
{
    std::optional<ObjectRef> innermost;
    std::optional<ObjectRef> document;
    QList<ObjectRef> level = roots;
    for (int depth = 0; depth < depthLimit && !level.isEmpty(); ++depth) {
        QList<Survey> surveys = surveyAll(reader, level, deadline);
        const Focused focused = depth > windowDepth ? focusedOf(reader, surveys, deadline) : Focused{};
        if (focused.documentToRead && !document)
            document = focused.documentToRead->object;
        if (focused.element) {
            innermost = focused.element->object;
            surveys = {*focused.element};
        } else if (innermost) {
            break;
        }
        QList<ObjectRef> open;
        for (const Survey& survey : std::as_const(surveys)) {
            if (isWorthOpening(survey, depth, windows))
                open.append(survey.object);
        }
        level = openAll(reader, open, deadline);
    }
    return innermost ? innermost : document;
}

} // namespace corvandi
