#pragma once

#include "system/accessibility/accessibility_bus.h"
#include "system/accessibility/element_table.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QList>
#include <QString>

#include <sys/types.h>

#include <optional>

namespace corvandi {

/// An object of an application on the accessibility bus.
struct ObjectRef {
    /// The application's unique name on the bus.
    QString bus;
    QString path;

    friend bool operator==(const ObjectRef&, const ObjectRef&) = default;
};

/// The object at the top of everything that an application exposes.
[[nodiscard]] ObjectRef applicationRoot(const QString& bus);
/// The registry's list of applications, as an object whose children they are.
[[nodiscard]] ObjectRef registryRoot();

/// Calls that read one thing of an object.
[[nodiscard]] QDBusMessage askStates(const ObjectRef& object);
[[nodiscard]] QDBusMessage askRole(const ObjectRef& object);
[[nodiscard]] QDBusMessage askInterfaces(const ObjectRef& object);
[[nodiscard]] QDBusMessage askAttributes(const ObjectRef& object);
[[nodiscard]] QDBusMessage askChildCount(const ObjectRef& object);
[[nodiscard]] QDBusMessage askChildren(const ObjectRef& object);
/// The process behind a unique name; answered by the bus itself.
[[nodiscard]] QDBusMessage askProcess(const QString& bus);

/// What their replies hold. A reply that is an error, or of another shape than agreed (any program may
/// be on the bus), holds nothing.
[[nodiscard]] std::optional<AccessibleStates> statesIn(const QDBusMessage& reply);
[[nodiscard]] std::optional<uint32_t> numberIn(const QDBusMessage& reply);
[[nodiscard]] QStringList interfacesIn(const QDBusMessage& reply);
[[nodiscard]] bool marksSearchField(const QDBusMessage& reply);
[[nodiscard]] int childCountIn(const QDBusMessage& reply);
[[nodiscard]] QList<ObjectRef> childrenIn(const QDBusMessage& reply);

/// What an application tells when it is asked about one object.
struct ObjectReport {
    enum class Outcome {
        told,
        /// There is no such object any more.
        gone,
        /// The application did not answer in time.
        unanswered,
    };

    Outcome outcome = Outcome::unanswered;
    /// The rest is set only if it was told. The process is the one behind the object's bus name.
    pid_t process = 0;
    AccessibleTraits traits;
};

/// Thread: the reader's.
[[nodiscard]] ObjectReport reportOn(BusReader& reader, const ObjectRef& object,
                                    const QDeadlineTimer& deadline);

} // namespace corvandi
