#include "platform/linux/focus/object_report.h"

#include <array>

namespace corvandi {
namespace {

/// Whether a child of the object is an editable text.
bool containsEditableText(BusReader& reader, const ObjectRef& object, const QDeadlineTimer& deadline)
{
    const std::array askForChildren{askChildren(object)};
    std::vector<QDBusMessage> calls;
    for (const ObjectRef& child : childrenIn(reader.ask(askForChildren, deadline).front())) {
        if (child.bus == object.bus)
            calls.push_back(askStates(child));
    }
    for (const QDBusMessage& reply : reader.ask(calls, deadline)) {
        if (statesIn(reply).value_or(AccessibleStates{}).has(AccessibleState::editable))
            return true;
    }
    return false;
}

} // namespace

ObjectReport reportOn(BusReader& reader, const ObjectRef& object, const QDeadlineTimer& deadline)
{
    const std::array calls{askStates(object), askRole(object), askInterfaces(object), askAttributes(object),
                           askProcess(object.bus)};
    const std::vector<QDBusMessage> replies = reader.ask(calls, deadline);
    const auto states = statesIn(replies[0]);
    const auto role = numberIn(replies[1]);
    const auto process = numberIn(replies[4]);
    if (!states || !role || !process) {
        return {.outcome = isUnanswered(replies[0]) || isUnanswered(replies[1])
                               ? ObjectReport::Outcome::unanswered
                               : ObjectReport::Outcome::gone,
                .traits = {}};
    }
    const QStringList interfaces = interfacesIn(replies[2]);
    return {
        .outcome = ObjectReport::Outcome::told,
        .process = static_cast<pid_t>(*process),
        .traits = {.role = *role,
                   .states = *states,
                   .hasText = interfaces.contains(QLatin1String("org.a11y.atspi.Text")),
                   .hasEditableText = interfaces.contains(QLatin1String("org.a11y.atspi.EditableText")),
                   .containsEditableText =
                       *role == comboBoxRole && containsEditableText(reader, object, deadline),
                   .isSearchField = marksSearchField(replies[3])},
    };
}

} // namespace corvandi
