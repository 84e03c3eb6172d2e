#include "system/language_model/known_servers.h"

#include "system/net/web_address.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <unistd.h>

#include <algorithm>

namespace corvandi {
namespace {

bool isServerAddress(const QUrl& url)
{
    return url.isValid() && url.scheme() == QLatin1String("http") && url.userInfo().isEmpty() &&
           !url.hasQuery() && !url.hasFragment() && isLoopbackHost(url.host());
}

/// The path without the parts that people copy along from instructions.
QString prefixOf(QString path)
{
    const auto dropSlashes = [&path] {
        while (path.endsWith(u'/'))
            path.chop(1);
    };
    dropSlashes();
    if (path.endsWith(QLatin1String("/v1")))
        path.chop(3);
    dropSlashes();
    return path;
}

QUrl withHost(QUrl url, const QString& host)
{
    url.setHost(host);
    return url;
}

} // namespace

std::vector<QUrl> serverAddresses(const QString& text)
{
    const QString trimmed = text.trimmed();
    const bool hasScheme = trimmed.contains(QLatin1String("://"));
    QUrl url(hasScheme ? trimmed : QStringLiteral("http://") + trimmed, QUrl::StrictMode);
    if (!isServerAddress(url))
        return {};
    url.setPath(prefixOf(url.path()));
    if (url.host() != QLatin1String("localhost"))
        return {url};
    return {withHost(url, QStringLiteral("127.0.0.1")), withHost(url, QStringLiteral("::1"))};
}

QUrl serverAddress(quint16 port)
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port));
}

QUrl protocolAddress(const QUrl& server, const QString& resource)
{
    QUrl address = server;
    address.setPath(server.path() + QLatin1String("/v1/") + resource);
    return address;
}

ListenerOwner ownerOf(const QUrl& server, const SocketTables& sockets)
{
    constexpr int usualPort = 80;
    return sockets.ownerOf(QHostAddress(server.host()), static_cast<quint16>(server.port(usualPort)));
}

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
