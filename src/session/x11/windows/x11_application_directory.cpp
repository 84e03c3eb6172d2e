#include "session/x11/windows/x11_application_directory.h"

#include "session/x11/xcb_connection.h"

#include <unistd.h>

#include <utility>

namespace corvandi {
namespace {

/// 4096 windows.
constexpr uint32_t longestClientList = 4 * 4096;

std::optional<QString> unlessEmpty(const QString& text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

X11ApplicationDirectory::X11ApplicationDirectory(const DesktopDatabase& applications, QStringList desktops)
    : applications_(applications)
    , desktops_(std::move(desktops))
    , windows_(x_)
    , netClientList_(x_.atom("_NET_CLIENT_LIST"))
{
}

QStringList X11ApplicationDirectory::desktopsFromEnvironment()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

std::vector<RunningApplication> X11ApplicationDirectory::runningApplications()
{
    std::vector<RunningApplication> running;
    for (const FrontWindow& window : listedWindows())
        running.push_back(applicationOf(window));
    return running;
}

std::vector<InstalledApplication> X11ApplicationDirectory::installedApplications()
{
    const DesktopIndex& index = applications_.index();
    std::vector<InstalledApplication> installed;
    for (const DesktopEntry& entry : index.entries()) {
        if (entry.isInMenu(desktops_) && !entry.runsInTerminal && !entry.name.isEmpty())
            installed.push_back({identifierOf(entry, index), entry.name, entry.icon});
    }
    return installed;
}

std::optional<QString> X11ApplicationDirectory::iconOf(const QString& bundleID)
{
    const DesktopEntry* entry = entryOf(bundleID);
    return entry && !entry->isUnusable ? unlessEmpty(entry->icon) : std::nullopt;
}

std::vector<FrontWindow> X11ApplicationDirectory::listedWindows() const
{
    std::vector<WindowQuestions> questions;
    for (const xcb_window_t window :
         wordsOf(x_, requestProperty(x_, x_.root(), netClientList_, longestClientList)))
        questions.push_back(windows_.ask(window));

    std::vector<FrontWindow> windows;
    for (const WindowQuestions& asked : questions) {
        if (auto window = windows_.answer(asked))
            windows.push_back(*std::move(window));
    }
    return windows;
}

RunningApplication X11ApplicationDirectory::applicationOf(const FrontWindow& window) const
{
    if (window.process == getpid())
        return {programIdentifier, std::nullopt, window.isRegular};
    const auto identity = identify(window, applications_.index());
    return {unlessEmpty(identity.id), unlessEmpty(identity.name), window.isRegular};
}

const DesktopEntry* X11ApplicationDirectory::entryOf(const QString& bundleID) const
{
    const DesktopIndex& index = applications_.index();
    if (bundleID == fileManagerIdentifier)
        return index.withId(index.fileManagerId());
    const DesktopEntry* entry = index.withId(bundleID);
    return entry && entry->id == bundleID ? entry : nullptr;
}

} // namespace corvandi
