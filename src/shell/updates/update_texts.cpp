#include "shell/updates/update_texts.h"

#include <QCoreApplication>

namespace corvandi::update_texts {
namespace {

QString translated(const char* sentence)
{
    return QCoreApplication::translate("Updates", sentence);
}

QString reason(const UpdateFailure& failure)
{
    switch (failure.kind) {
    case UpdateFailure::Kind::unreachable:
        return translated("The update server can't be reached. Check your connection.");
    case UpdateFailure::Kind::timedOut:
        return translated("The update server took too long to answer. Try again later.");
    case UpdateFailure::Kind::insecure:
        return translated("The connection to the update server isn't secure, so it was closed.");
    case UpdateFailure::Kind::refused:
        return translated("The update server can't answer at the moment (%1).").arg(failure.detail);
    case UpdateFailure::Kind::unreadable:
        return translated("What the update server says can't be understood. Try again later.");
    case UpdateFailure::Kind::untrusted:
        return translated("What the update server says isn't signed by the makers of Corvandi, so it was "
                          "ignored.");
    case UpdateFailure::Kind::incomplete:
        return translated("The download broke off before it was complete. Try again.");
    case UpdateFailure::Kind::notOpened:
        return translated("No web browser could be opened. You can open the page yourself:\n%1")
            .arg(failure.detail);
    }
    return {};
}

/// "Debian 12" rather than "debian 12".
QString systemName(const QString& identifier, const QString& version)
{
    return identifier.left(1).toUpper() + identifier.mid(1) + u' ' + version;
}

} // namespace

QString checking()
{
    return translated("Checking for updates…");
}

Notice upToDate(const RunningProgram& program)
{
    return {translated("You're up to date."),
            translated("Corvandi %1 is the newest version.").arg(program.version.text())};
}

Notice needsNewerSystem(const Release& release, const RunningProgram& program)
{
    const QString oldest = release.minimumSystem.at(program.system).text();
    return {translated("Corvandi %1 is there, but it needs a newer system.").arg(release.version.text()),
            translated("It needs %1 or newer; this is %2.")
                .arg(systemName(program.system, oldest), systemName(program.system, program.systemVersion))};
}

Question available(const Release& release, const RunningProgram& program, Attention attention)
{
    QString details = translated("You have version %1.").arg(program.version.text());
    if (!release.notes.isEmpty())
        details += QStringLiteral("\n\n") + release.notes;
    return {{translated("Corvandi %1 is available.").arg(release.version.text()), details},
            translated("Open Page"),
            translated("Not Now"),
            attention};
}

Notice failed(const UpdateFailure& failure)
{
    return {translated("The update didn't work."), reason(failure)};
}

} // namespace corvandi::update_texts
