#include "platform/linux/login_item/autostart_login_item.h"

#include "platform/linux/login_item/autostart_entry.h"

#include "base/error.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <utility>

namespace corvandi {
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
