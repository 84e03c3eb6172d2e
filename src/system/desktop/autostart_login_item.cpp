#include "system/desktop/autostart_login_item.h"

#include "base/error.h"
#include "system/applications/desktop_entry.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <utility>

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

namespace {

QString entryIn(const QString& folder)
{
    return folder + QLatin1Char('/') + autostartEntryName();
}

[[noreturn]] void refuse(const char* sentence, const Error& reason)
{
    throw Error(QCoreApplication::translate("LoginItem", sentence).arg(reason.description()));
}

} // namespace

AutostartFolders AutostartFolders::fromEnvironment()
{
    const QString subfolder = QStringLiteral("/autostart");
    AutostartFolders folders;
    folders.user = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + subfolder;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        if (folder + subfolder != folders.user)
            folders.system.append(folder + subfolder);
    }
    return folders;
}

AutostartLoginItem::AutostartLoginItem(AutostartFolders folders, QString program, FileSystem& files)
    : folders_(std::move(folders))
    , program_(std::move(program))
    , files_(files)
    , userEntry_(entryIn(folders_.user))
{
}

bool AutostartLoginItem::isEnabled()
{
    return isThere(userEntry_) ? starts(userEntry_) : startsFromSystem();
}

void AutostartLoginItem::enable()
{
    write(startingEntry(program_));
}

void AutostartLoginItem::disable()
{
    if (!isEnabled())
        return;
    if (startsFromSystem()) {
        write(hiddenEntry());
        return;
    }
    try {
        files_.remove(userEntry_);
    } catch (const Error& error) {
        refuse(QT_TRANSLATE_NOOP("LoginItem", "The autostart entry can't be removed: %1."), error);
    }
}

bool AutostartLoginItem::startsFromSystem()
{
    for (const QString& folder : std::as_const(folders_.system)) {
        if (isThere(entryIn(folder)))
            return starts(entryIn(folder));
    }
    return false;
}

bool AutostartLoginItem::starts(const QString& path)
{
    try {
        return startsAtLogin(files_.read(path));
    } catch (const Error&) {
        return false;
    }
}

bool AutostartLoginItem::isThere(const QString& path)
{
    try {
        return files_.exists(path);
    } catch (const Error&) {
        return false;
    }
}

void AutostartLoginItem::write(const QByteArray& entry)
{
    try {
        files_.createDirectory(folders_.user);
        files_.writeAtomically(userEntry_, entry);
    } catch (const Error& error) {
        refuse(QT_TRANSLATE_NOOP("LoginItem", "The autostart entry can't be written: %1."), error);
    }
}

} // namespace corvandi
