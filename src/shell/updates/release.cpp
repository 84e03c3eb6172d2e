#include "shell/updates/release.h"

#include "base/error.h"

#include <QSysInfo>

#include <nlohmann/json.hpp>

namespace corvandi {
namespace {

using Json = nlohmann::json;

constexpr qsizetype maximumNotes = 20'000;

[[noreturn]] void refuse(const char* member)
{
    throw Error(QStringLiteral("\"%1\" in the manifest is missing or impossible").arg(QLatin1String(member)));
}

QString text(const Json& object, const char* member)
{
    const auto found = object.find(member);
    if (found == object.end() || !found->is_string())
        refuse(member);
    return QString::fromStdString(found->get_ref<const std::string&>());
}

Version version(const Json& manifest)
{
    const std::optional<Version> found = Version::parse(text(manifest, "version"));
    if (!found)
        refuse("version");
    return *found;
}

QUrl page(const Json& manifest)
{
    const QUrl url(text(manifest, "page"), QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty() ||
        !url.userInfo().isEmpty())
        refuse("page");
    return url;
}

QString notes(const Json& manifest)
{
    if (!manifest.contains("notes"))
        return {};
    const QString written = text(manifest, "notes");
    if (written.size() > maximumNotes)
        refuse("notes");
    return written;
}

std::map<QString, Version> minimumSystem(const Json& manifest)
{
    std::map<QString, Version> minimum;
    const auto found = manifest.find("minimumSystem");
    if (found == manifest.end())
        return minimum;
    if (!found->is_object())
        refuse("minimumSystem");
    for (const auto& [system, value] : found->items()) {
        const std::optional<Version> oldest =
            value.is_string() ? Version::parse(QString::fromStdString(value.get<std::string>()))
                              : std::nullopt;
        if (!oldest)
            refuse("minimumSystem");
        minimum.emplace(QString::fromStdString(system), *oldest);
    }
    return minimum;
}

} // namespace

UpdateResult<Release> readManifest(const QByteArray& manifest)
{
    const Json json = Json::parse(manifest.begin(), manifest.end(), nullptr, false);
    if (!json.is_object())
        return UpdateFailure{UpdateFailure::Kind::unreadable,
                             QStringLiteral("the manifest is not a JSON object")};
    try {
        return Release{version(json), page(json), notes(json), minimumSystem(json)};
    } catch (const Error& error) {
        return UpdateFailure{UpdateFailure::Kind::unreadable, error.description()};
    }
}

RunningProgram RunningProgram::thisOne()
{
    return {Version::parse(QStringLiteral(CORVANDI_VERSION)).value(), QSysInfo::productType(),
            QSysInfo::productVersion()};
}

} // namespace corvandi
