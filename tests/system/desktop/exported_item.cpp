#include "exported_item.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <stdexcept>

namespace corvandi::testing {
namespace {

const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString menuPath = QStringLiteral("/MenuBar");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

QVariantList call(const QString& service, const QString& path, const QString& interface,
                  const QString& method, const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(reply.errorMessage().toStdString());
    return reply.arguments();
}

} // namespace

QStringList shownItems()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        trayService, QStringLiteral("/StatusNotifierWatcher"), properties, QStringLiteral("Get"));
    question.setArguments({trayService, QStringLiteral("RegisteredStatusNotifierItems")});
    question.setAutoStartService(false);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(question);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    QStringList services;
    const auto items = reply.arguments().at(0).value<QDBusVariant>().variant().toStringList();
    for (const QString& item : items)
        services.append(item.section(QLatin1Char('/'), 0, 0));
    return services;
}

QVariant ExportedItem::property(const QString& name) const
{
    return call(service_, itemPath, properties, QStringLiteral("Get"), {itemInterface, name})
        .at(0)
        .value<QDBusVariant>()
        .variant();
}

void ExportedItem::aboutToShowMenu() const
{
    call(service_, menuPath, menuInterface, QStringLiteral("AboutToShow"), {0});
}

std::vector<harness::MenuLine> ExportedItem::lines() const
{
    return harness::menuLines(
        call(service_, menuPath, menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()}));
}

std::vector<std::string> ExportedItem::menu() const
{
    std::vector<std::string> result;
    for (const harness::MenuLine& line : lines())
        result.push_back(line.text());
    return result;
}

QList<int> ExportedItem::ids() const
{
    QList<int> result;
    for (const harness::MenuLine& line : lines())
        result.append(line.id);
    return result;
}

void ExportedItem::choose(const QString& label) const
{
    for (const harness::MenuLine& line : lines()) {
        if (line.properties.value(QStringLiteral("label")) == label)
            call(service_, menuPath, menuInterface, QStringLiteral("Event"),
                 {line.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0u});
    }
}

} // namespace corvandi::testing
