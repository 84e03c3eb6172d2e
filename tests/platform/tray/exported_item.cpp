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

std::string lineOf(const QVariantMap& item)
{
    if (item.value(QStringLiteral("type")) == QLatin1String("separator"))
        return "---";
    std::string line = item.value(QStringLiteral("label")).toString().toStdString();
    if (item.value(QStringLiteral("enabled"), true).toBool())
        line = "[" + line + "]";
    QList<QStringList> shortcuts;
    if (item.contains(QStringLiteral("shortcut")))
        item.value(QStringLiteral("shortcut")).value<QDBusArgument>() >> shortcuts;
    for (const QStringList& shortcut : shortcuts)
        line += " " + shortcut.join(QLatin1Char('+')).toStdString();
    return line;
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

std::vector<ExportedItem::Line> ExportedItem::lines() const
{
    const QVariantList reply =
        call(service_, menuPath, menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()});
    const auto root = reply.at(1).value<QDBusArgument>();
    int rootId = 0;
    QVariantMap rootProperties;
    QVariantList children;
    root.beginStructure();
    root >> rootId >> rootProperties >> children;
    root.endStructure();
    std::vector<Line> lines;
    for (const QVariant& child : children) {
        const auto argument = child.value<QDBusArgument>();
        Line line;
        argument.beginStructure();
        argument >> line.id >> line.properties;
        argument.endStructure();
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> ExportedItem::menu() const
{
    std::vector<std::string> result;
    for (const Line& line : lines())
        result.push_back(lineOf(line.properties));
    return result;
}

QList<int> ExportedItem::ids() const
{
    QList<int> result;
    for (const Line& line : lines())
        result.append(line.id);
    return result;
}

void ExportedItem::choose(const QString& label) const
{
    for (const Line& line : lines()) {
        if (line.properties.value(QStringLiteral("label")) == label)
            call(service_, menuPath, menuInterface, QStringLiteral("Event"),
                 {line.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0u});
    }
}

} // namespace corvandi::testing
