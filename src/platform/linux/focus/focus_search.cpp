#include "platform/linux/focus/focus_search.h"

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

std::optional<Survey> focusedOf(const QList<Survey>& level)
{
    for (const Survey& survey : level) {
        if (survey.states.has(AccessibleState::focused))
            return survey;
    }
    return std::nullopt;
}

} // namespace

std::optional<ObjectRef> findFocused(BusReader& reader, const QList<ObjectRef>& roots,
                                     SearchedWindows windows, const QDeadlineTimer& deadline)
{
    std::optional<ObjectRef> innermost;
    QList<ObjectRef> level = roots;
    for (int depth = 0; depth < depthLimit && !level.isEmpty(); ++depth) {
        QList<Survey> surveys = surveyAll(reader, level, deadline);
        const auto focused = depth > windowDepth ? focusedOf(surveys) : std::nullopt;
        if (focused) {
            innermost = focused->object;
            surveys = {*focused};
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
    return innermost;
}

} // namespace corvandi
