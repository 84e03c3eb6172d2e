#include "system/applications/application_identity.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace corvandi {
namespace {

/// Terminals from before there was a shortcut for pasting, by the class of their windows.
constexpr std::array<const char*, 9> terminalsWithoutPaste{
    "xterm", "uxterm", "lxterm", "koi8rxterm", "rxvt", "urxvt", "kterm", "aterm", "eterm",
};
/// Other terminals that are often installed without a desktop file.
constexpr std::array<const char*, 3> bareTerminals{"mlterm", "st-256color", "stterm-256color"};

template<size_t count>
bool isAmong(const std::array<const char*, count>& names, const QString& windowClass)
{
    return std::any_of(names.begin(), names.end(), [&](const char* name) {
        return windowClass.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
    });
}

ApplicationKind kindOf(const FrontWindow& window, const DesktopEntry* entry)
{
    if (isAmong(terminalsWithoutPaste, window.windowClass))
        return ApplicationKind::terminalWithoutPaste;
    const bool isTerminal = entry ? entry->categories.contains(QLatin1String("TerminalEmulator"))
                                  : isAmong(bareTerminals, window.windowClass);
    return isTerminal ? ApplicationKind::terminal : ApplicationKind::ordinary;
}

/// The name of the process's program; empty when it has ended. A program that was replaced on disk
/// keeps its name.
QString executableName(pid_t process)
{
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    std::error_code error;
    const auto program = std::filesystem::read_symlink(folder / "exe", error);
    if (!error) {
        QString name = QString::fromStdString(program.filename().string());
        const QLatin1String deleted(" (deleted)");
        if (name.endsWith(deleted))
            name.chop(deleted.size());
        return name;
    }
    // Another user's process hides its program, but not the first 15 characters of its name.
    std::string name;
    std::getline(std::ifstream(folder / "comm"), name);
    return QString::fromStdString(name);
}

QString nameWithoutDesktopFile(const FrontWindow& window)
{
    const QString executable = window.process ? executableName(*window.process) : QString();
    return executable.isEmpty() ? window.windowClass : executable;
}

/// Some programs give their windows an application identifier that is not the name of their desktop file.
const DesktopEntry* entryOf(const FrontWindow& window, const DesktopIndex& applications)
{
    const DesktopEntry* entry = applications.withId(window.gtkApplicationId);
    return entry ? entry : applications.withWindowClass(window.windowClass);
}

QString idOf(const FrontWindow& window, const DesktopEntry* entry)
{
    if (entry)
        return entry->id;
    return window.gtkApplicationId.isEmpty() ? nameWithoutDesktopFile(window) : window.gtkApplicationId;
}

/// Some file managers have an entry of their own for opening folders, which menus hide: it stands for the
/// program that it starts.
bool isFileManager(const QString& id, const DesktopEntry* entry, const DesktopIndex& applications)
{
    const QString& fileManager = applications.fileManagerId();
    if (fileManager.isEmpty() || id == fileManager)
        return !fileManager.isEmpty();
    const DesktopEntry* opener = applications.withId(fileManager);
    return entry && opener && opener->noDisplay && !opener->executable.isEmpty() &&
           entry->executable == opener->executable;
}

} // namespace

ApplicationIdentity identify(const FrontWindow& window, const DesktopIndex& applications)
{
    if (window.isDesktop)
        return {fileManagerIdentifier, ApplicationKind::ordinary};
    const DesktopEntry* entry = entryOf(window, applications);
    ApplicationIdentity identity{idOf(window, entry), kindOf(window, entry), entry ? entry->name : QString()};
    if (isFileManager(identity.id, entry, applications))
        identity.id = fileManagerIdentifier;
    return identity;
}

QString identifierOf(const DesktopEntry& entry, const DesktopIndex& applications)
{
    return isFileManager(entry.id, &entry, applications) ? fileManagerIdentifier : entry.id;
}

} // namespace corvandi
