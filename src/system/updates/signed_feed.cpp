#include "system/updates/signed_feed.h"

#include <QLatin1String>

namespace corvandi {
namespace {

constexpr QLatin1String format("corvandi-update-1");
constexpr qsizetype signatureLength = 64;
/// With the padding that Qt would do without.
constexpr qsizetype encodedSignatureLength = 88;

} // namespace

std::optional<SignedFeed> SignedFeed::split(const QByteArray& feed)
{
    const qsizetype end = feed.indexOf('\n');
    const QByteArray start = QByteArray(format.data(), format.size()) + ' ';
    if (end < 0 || !feed.startsWith(start))
        return std::nullopt;
    const QByteArray encoded = feed.mid(start.size(), end - start.size());
    const auto signature = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    if (!signature || (*signature).size() != signatureLength || encoded.size() != encodedSignatureLength)
        return std::nullopt;
    return SignedFeed{*signature, feed.mid(end + 1)};
}

QByteArray SignedFeed::signedText() const
{
    return QByteArray(format.data(), format.size()) + '\n' + manifest;
}

} // namespace corvandi
