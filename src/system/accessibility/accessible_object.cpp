#include "system/accessibility/accessible_object.h"

#include <QDBusVariant>
#include <QMap>

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

namespace {

constexpr QLatin1String accessibleInterface("org.a11y.atspi.Accessible");

QDBusMessage ask(const ObjectRef& object, const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(object.bus, object.path, interface, method);
}

QDBusMessage askAccessible(const ObjectRef& object, const char* method)
{
    return ask(object, accessibleInterface, QLatin1String(method));
}

bool holds(const QDBusMessage& reply, const char* signature)
{
    return reply.type() == QDBusMessage::ReplyMessage && reply.signature() == QLatin1String(signature);
}

template<class T>
T read(const QDBusMessage& reply)
{
    return qdbus_cast<T>(reply.arguments().constFirst());
}

} // namespace

ObjectRef applicationRoot(const QString& bus)
{
    return {bus, QStringLiteral("/org/a11y/atspi/accessible/root")};
}

ObjectRef registryRoot()
{
    return applicationRoot(QStringLiteral("org.a11y.atspi.Registry"));
}

QDBusMessage askStates(const ObjectRef& object)
{
    return askAccessible(object, "GetState");
}

QDBusMessage askRole(const ObjectRef& object)
{
    return askAccessible(object, "GetRole");
}

QDBusMessage askInterfaces(const ObjectRef& object)
{
    return askAccessible(object, "GetInterfaces");
}

QDBusMessage askAttributes(const ObjectRef& object)
{
    return askAccessible(object, "GetAttributes");
}

QDBusMessage askChildCount(const ObjectRef& object)
{
    QDBusMessage call = ask(object, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QString(accessibleInterface) << QStringLiteral("ChildCount");
    return call;
}

QDBusMessage askChildren(const ObjectRef& object)
{
    return askAccessible(object, "GetChildren");
}

QDBusMessage askProcess(const QString& bus)
{
    const QString name = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = ask({name, QStringLiteral("/org/freedesktop/DBus")}, name,
                            QStringLiteral("GetConnectionUnixProcessID"));
    call << bus;
    return call;
}

std::optional<AccessibleStates> statesIn(const QDBusMessage& reply)
{
    if (!holds(reply, "au"))
        return std::nullopt;
    const auto words = read<QList<uint32_t>>(reply);
    return AccessibleStates{words.value(0) | (static_cast<uint64_t>(words.value(1)) << 32U)};
}

std::optional<uint32_t> numberIn(const QDBusMessage& reply)
{
    if (!holds(reply, "u"))
        return std::nullopt;
    return read<uint32_t>(reply);
}

QStringList interfacesIn(const QDBusMessage& reply)
{
    return holds(reply, "as") ? read<QStringList>(reply) : QStringList();
}

bool marksSearchField(const QDBusMessage& reply)
{
    if (!holds(reply, "a{ss}"))
        return false;
    // The first two come from web pages, as their author wrote them.
    const auto attributes = read<QMap<QString, QString>>(reply);
    const QStringList roles = attributes.value(QStringLiteral("xml-roles")).split(QLatin1Char(' '));
    return roles.contains(QLatin1String("searchbox")) ||
           attributes.value(QStringLiteral("text-input-type")) == QLatin1String("search");
}

int childCountIn(const QDBusMessage& reply)
{
    return holds(reply, "v") ? read<QDBusVariant>(reply).variant().toInt() : 0;
}

QList<ObjectRef> childrenIn(const QDBusMessage& reply)
{
    QList<ObjectRef> children;
    if (!holds(reply, "a(so)"))
        return children;
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString bus;
        QDBusObjectPath path;
        list.beginStructure();
        list >> bus >> path;
        list.endStructure();
        children.append({bus, path.path()});
    }
    list.endArray();
    return children;
}

} // namespace corvandi
