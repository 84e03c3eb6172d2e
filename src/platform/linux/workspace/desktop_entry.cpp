#include "platform/linux/workspace/desktop_entry.h"

#include "platform/linux/workspace/key_file.h"

#include <QFileInfo>
#include <QProcess>

namespace corvandi {
namespace {

/// The program in a command line such as "env LANG=C /usr/bin/editor %U".
QString programOf(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    if (!words.isEmpty() && QFileInfo(words.first()).fileName() == QLatin1String("env")) {
        words.removeFirst();
        while (!words.isEmpty() && words.first().contains(QLatin1Char('=')))
            words.removeFirst();
    }
    return words.isEmpty() ? QString() : QFileInfo(words.first()).fileName();
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content)
{
    DesktopEntry entry;
    entry.id = id;
    bool isApplication = false;
    forEachKey(content, "Desktop Entry", [&](const QByteArray& key, const QString& value) {
        const bool isTrue = value == QLatin1String("true");
        if (key == "Type")
            isApplication = value == QLatin1String("Application");
        else if (key == "StartupWMClass")
            entry.startupWmClass = value;
        else if (key == "Exec")
            entry.executable = programOf(value);
        else if (key == "Categories")
            entry.categories = listItems(value);
        else if (key == "MimeType")
            entry.mimeTypes = listItems(value);
        else if (key == "NoDisplay")
            entry.noDisplay = isTrue;
        else if (key == "Hidden")
            entry.hidden = isTrue;
    });
    if (!isApplication && !entry.hidden)
        return std::nullopt;
    return entry;
}

} // namespace corvandi
