#include "session/x11/windows/x11_workspace.h"

#include <unistd.h>

namespace corvandi {

X11Workspace::X11Workspace(MainQueue& queue, DesktopPaths paths)
    : frontWindow_(x_)
    , applications_(queue, std::move(paths))
{
}

std::optional<ApplicationIdentity> X11Workspace::frontmost() const
{
    const auto window = frontWindow_.read();
    if (!window)
        return std::nullopt;
    if (window->process == getpid())
        return ApplicationIdentity{programIdentifier, ApplicationKind::ordinary};
    auto identity = identify(*window, applications_.index());
    if (identity.id.isEmpty())
        return std::nullopt;
    return identity;
}

std::optional<QString> X11Workspace::frontmostApplication()
{
    const auto application = frontmost();
    return application ? std::optional(application->id) : std::nullopt;
}

std::optional<QString> X11Workspace::ownIdentifier() const
{
    return programIdentifier;
}

std::optional<pid_t> X11Workspace::frontmostProcess()
{
    const auto window = frontWindow_.read();
    return window ? window->process : std::nullopt;
}

ApplicationKind X11Workspace::frontmostKind() const
{
    const auto application = frontmost();
    return application ? application->kind : ApplicationKind::ordinary;
}

} // namespace corvandi
