#include "harness/menu_layout.h"

#include <QDBusArgument>
#include <QStringList>

namespace corvandi::harness {

std::string MenuLine::text() const
{
    if (properties.value(QStringLiteral("type")) == QLatin1String("separator"))
        return "---";
    QString text = properties.value(QStringLiteral("label")).toString();
    if (properties.value(QStringLiteral("enabled"), true).toBool())
        text = QLatin1Char('[') + text + QLatin1Char(']');
    QList<QStringList> shortcuts;
    if (properties.contains(QStringLiteral("shortcut")))
        properties.value(QStringLiteral("shortcut")).value<QDBusArgument>() >> shortcuts;
    for (const QStringList& shortcut : shortcuts)
        text += QLatin1Char(' ') + shortcut.join(QLatin1Char('+'));
    return text.toStdString();
}

std::vector<MenuLine> menuLines(const QVariantList& layout)
{
    const auto root = layout.value(1).value<QDBusArgument>();
    int rootId = 0;
    QVariantMap rootProperties;
    QVariantList children;
    root.beginStructure();
    root >> rootId >> rootProperties >> children;
    root.endStructure();
    std::vector<MenuLine> lines;
    for (const QVariant& child : children) {
        const auto argument = child.value<QDBusArgument>();
        MenuLine line;
        argument.beginStructure();
        argument >> line.id >> line.properties;
        argument.endStructure();
        lines.push_back(line);
    }
    return lines;
}

} // namespace corvandi::harness
