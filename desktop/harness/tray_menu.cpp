#include "harness/tray_menu.h"

#include "harness/accessible.h"

#include <QDBusVariant>

namespace corvandi::harness {
namespace {

const BusConnection::Target watcher{QStringLiteral("org.kde.StatusNotifierWatcher"),
                                    QStringLiteral("/StatusNotifierWatcher"),
                                    QStringLiteral("org.kde.StatusNotifierWatcher")};

} // namespace

TrayMenu::TrayMenu(pid_t process)
{
    const bool isThere = waitUntil([&] {
        const QVariant items = bus_->property(watcher, QStringLiteral("RegisteredStatusNotifierItems"));
        for (const QString& item : items.toStringList()) {
            const QString service = item.section(QLatin1Char('/'), 0, 0);
            if (bus_->processOf(service) == process)
                menu_ = {service, QStringLiteral("/MenuBar"), QStringLiteral("com.canonical.dbusmenu")};
        }
        return !menu_.service.isEmpty();
    });
    if (!isThere)
        throw HarnessError("the tray shows no icon of process " + std::to_string(process));
}

std::string TrayMenu::iconName() const
{
    const BusConnection::Target item{menu_.service, QStringLiteral("/StatusNotifierItem"),
                                     QStringLiteral("org.kde.StatusNotifierItem")};
    return bus_->property(item, QStringLiteral("IconName")).toString().toStdString();
}

std::vector<MenuLine> TrayMenu::layout() const
{
    constexpr int wholeMenu = 0;
    constexpr int allLevels = -1;
    return menuLines(bus_->call(menu_, QStringLiteral("GetLayout"), {wholeMenu, allLevels, QStringList()}));
}

std::vector<std::string> TrayMenu::lines() const
{
    std::vector<std::string> texts;
    for (const MenuLine& line : layout())
        texts.push_back(line.text());
    return texts;
}

bool TrayMenu::waitForStatus(const std::string& line, Clock::time_point deadline) const
{
    return waitUntil([&] { return lines().at(0) == line; }, deadline);
}

Clock::time_point TrayMenu::choose(const std::string& label) const
{
    for (const MenuLine& line : layout()) {
        if (line.properties.value(QStringLiteral("label")).toString().toStdString() != label)
            continue;
        const auto before = Clock::now();
        bus_->call(menu_, QStringLiteral("Event"),
                   {line.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
        return before;
    }
    throw HarnessError("the menu has no \"" + label + '"');
}

} // namespace corvandi::harness
