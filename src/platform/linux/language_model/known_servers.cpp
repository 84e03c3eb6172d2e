#include "platform/linux/language_model/known_servers.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include <unistd.h>

namespace corvandi {
namespace {

const QStringList& programs()
{
    static const QStringList names{
        QStringLiteral("ollama"),    QStringLiteral("llama-server"), QStringLiteral("local-ai"),
        QStringLiteral("lms"),       QStringLiteral("lm-studio"),    QStringLiteral("jan"),
        QStringLiteral("koboldcpp"), QStringLiteral("vllm"),         QStringLiteral("gpt4all"),
        QStringLiteral("llamafile"),
    };
    return names;
}

const QStringList& services()
{
    static const QStringList names{
        QStringLiteral("ollama.service"),
        QStringLiteral("llama-server.service"),
        QStringLiteral("local-ai.service"),
    };
    return names;
}

bool holdsAny(const QStringList& folders, const QStringList& names, bool (QFileInfo::*isRight)() const)
{
    return std::ranges::any_of(folders, [&](const QString& folder) {
        return std::ranges::any_of(names, [&](const QString& name) {
            const QFileInfo file(folder + u'/' + name);
            return file.isFile() && (file.*isRight)();
        });
    });
}

} // namespace

const std::vector<quint16>& usualServerPorts()
{
    static const std::vector<quint16> ports{
        11434, // Ollama
        8080,  // llama-server, LocalAI, llamafile
        1234,  // LM Studio
        1337,  // Jan
        5001,  // KoboldCpp
        8000,  // vLLM
        4891,  // GPT4All
    };
    return ports;
}

InstallationFolders InstallationFolders::ofThisMachine()
{
    QStringList services{QStringLiteral("/etc/systemd/system"), QStringLiteral("/usr/lib/systemd/system"),
                         QStringLiteral("/usr/lib/systemd/user")};
    services << QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                    QLatin1String("/systemd/user");
    return {qEnvironmentVariable("PATH").split(u':', Qt::SkipEmptyParts), services};
}

bool isModelServerInstalled(const InstallationFolders& folders)
{
    return holdsAny(folders.programs, programs(), &QFileInfo::isExecutable) ||
           holdsAny(folders.services, services(), &QFileInfo::isReadable);
}

quint64 usableMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<quint64>(pages) * static_cast<quint64>(pageSize) : 0;
}

} // namespace corvandi
