#include "shell/updates/update_feed.h"

#include "base/error.h"
#include "shell/updates/update_address.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace corvandi {
namespace {

using Json = nlohmann::json;

constexpr QLatin1String format("corvandi-update-1");
constexpr qsizetype signatureLength = 64;
/// With the padding that Qt would do without.
constexpr qsizetype encodedSignatureLength = 88;
constexpr qsizetype digestLength = 64;
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

bool isPackageType(const QString& type)
{
    return type == QLatin1String("deb") || type == QLatin1String("rpm") || type == QLatin1String("flatpak");
}

QUrl package(const Json& manifest, const QUrl& feed)
{
    const QUrl url(text(manifest, "package"), QUrl::StrictMode);
    if (!mayLeadTo(feed, url) || !isPackageType(url.path().section(u'.', -1)))
        refuse("package");
    return url;
}

int64_t length(const Json& manifest)
{
    const auto found = manifest.find("length");
    // Signed or not is how the number was written; a fraction is neither.
    if (found == manifest.end() || !found->is_number_unsigned())
        refuse("length");
    const auto bytes = found->get<uint64_t>();
    if (bytes == 0 || bytes > static_cast<uint64_t>(maximumPackageLength))
        refuse("length");
    return static_cast<int64_t>(bytes);
}

QByteArray digest(const Json& manifest)
{
    const QByteArray digits = text(manifest, "sha512").toLatin1();
    const auto isHex = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    if (digits.size() != 2 * digestLength || !std::all_of(digits.begin(), digits.end(), isHex))
        refuse("sha512");
    return QByteArray::fromHex(digits);
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

QByteArray SignedManifest::signedText() const
{
    return QByteArray(format.data(), format.size()) + '\n' + manifest;
}

std::optional<SignedManifest> splitFeed(const QByteArray& feed)
{
    const qsizetype end = feed.indexOf('\n');
    const QByteArray start = QByteArray(format.data(), format.size()) + ' ';
    if (end < 0 || !feed.startsWith(start))
        return std::nullopt;
    const QByteArray encoded = feed.mid(start.size(), end - start.size());
    const auto signature = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    if (!signature || (*signature).size() != signatureLength || encoded.size() != encodedSignatureLength)
        return std::nullopt;
    return SignedManifest{*signature, feed.mid(end + 1)};
}

UpdateResult<Release> readManifest(const QByteArray& manifest, const QUrl& feed)
{
    const Json json = Json::parse(manifest.begin(), manifest.end(), nullptr, false);
    if (!json.is_object())
        return UpdateFailure{UpdateFailure::Kind::unreadable,
                             QStringLiteral("the manifest is not a JSON object")};
    try {
        return Release{version(json), package(json, feed), length(json),
                       digest(json),  notes(json),         minimumSystem(json)};
    } catch (const Error& error) {
        return UpdateFailure{UpdateFailure::Kind::unreadable, error.description()};
    }
}

} // namespace corvandi
