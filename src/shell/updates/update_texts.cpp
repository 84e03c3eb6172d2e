#include "shell/updates/update_texts.h"

#include <QCoreApplication>
#include <QLocale>

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
    case UpdateFailure::Kind::tampered:
        return translated("The download isn't what the makers of Corvandi have signed, so it was deleted.");
    case UpdateFailure::Kind::notStored:
        return translated("The update can't be stored: %1.").arg(failure.detail);
    case UpdateFailure::Kind::notOpened:
        return translated("The update is fine, but no installer could be opened for it. You can install it "
                          "yourself:\n%1")
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

QString downloading(const Release& release)
{
    return translated("Downloading Corvandi %1…").arg(release.version.text());
}

QString opening()
{
    return translated("Checking the download and opening the installer…");
}

UpdateMessage upToDate(const RunningProgram& program)
{
    return {translated("You're up to date."),
            translated("Corvandi %1 is the newest version.").arg(program.version.text())};
}

UpdateMessage needsNewerSystem(const Release& release, const RunningProgram& program)
{
    const QString oldest = release.minimumSystem.at(program.system).text();
    return {translated("Corvandi %1 is there, but it needs a newer system.").arg(release.version.text()),
            translated("It needs %1 or newer; this is %2.")
                .arg(systemName(program.system, oldest), systemName(program.system, program.systemVersion))};
}

UpdateQuestion download(const Release& release, const RunningProgram& program, Attention attention)
{
    const QString size = QLocale().formattedDataSize(release.length, 1, QLocale::DataSizeSIFormat);
    QString details =
        translated("You have version %1. The download is %2.").arg(program.version.text(), size);
    if (!release.notes.isEmpty())
        details += QStringLiteral("\n\n") + release.notes;
    return {{translated("Corvandi %1 is available.").arg(release.version.text()), details},
            translated("Download"),
            translated("Not Now"),
            attention};
}

UpdateQuestion install(const Release& release)
{
    return {{translated("Corvandi %1 is ready to install.").arg(release.version.text()),
             translated("The download is signed by the makers of Corvandi. Your system's installer opens it "
                        "and guides you through the rest.")},
            translated("Install…"),
            translated("Not Now"),
            Attention::take};
}

UpdateMessage failed(const UpdateFailure& failure)
{
    return {translated("The update didn't work."), reason(failure)};
}

} // namespace corvandi::update_texts
