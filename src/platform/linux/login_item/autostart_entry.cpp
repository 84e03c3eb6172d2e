#include "platform/linux/login_item/autostart_entry.h"

#include "platform/linux/workspace/key_file.h"

namespace corvandi {
namespace {

constexpr const char* entryBegin = "[Desktop Entry]\n"
                                   "Type=Application\n"
                                   "Name=Corvandi\n";

/// The word in a command line: what is special within double quotes gets a backslash, and a percent sign
/// would begin a field code.
QString quotedWord(const QString& word)
{
    QString quoted;
    for (const QChar character : word) {
        if (QStringLiteral("\"`$\\").contains(character))
            quoted += QLatin1Char('\\');
        else if (character == QLatin1Char('%'))
            quoted += character;
        quoted += character;
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

/// The text as a value of a key file.
QByteArray asValue(const QString& text)
{
    QByteArray value = text.toUtf8();
    value.replace('\\', "\\\\");
    value.replace('\n', "\\n");
    value.replace('\r', "\\r");
    value.replace('\t', "\\t");
    return value;
}

} // namespace

QString autostartEntryName()
{
    return QStringLiteral("io.corvandi.Corvandi.desktop");
}

QByteArray startingEntry(const QString& program)
{
    return QByteArray(entryBegin) + "TryExec=" + asValue(program) + "\nExec=" + asValue(quotedWord(program)) +
           "\nIcon=io.corvandi.Corvandi\nTerminal=false\nX-GNOME-Autostart-enabled=true\n";
}

QByteArray hiddenEntry()
{
    return QByteArray(entryBegin) + "Hidden=true\n";
}

bool startsAtLogin(const QByteArray& entry)
{
    bool hasProgram = false;
    bool isOff = false;
    forEachKey(entry, "Desktop Entry", [&](const QByteArray& key, const QString& value) {
        if (key == "Exec")
            hasProgram = !value.isEmpty();
        else if (key == "Hidden")
            isOff = isOff || value == QLatin1String("true");
        else if (key == "X-GNOME-Autostart-enabled")
            isOff = isOff || value == QLatin1String("false");
    });
    return hasProgram && !isOff;
}

} // namespace corvandi
