#include "system/updates/public_key.h"

#include <sodium.h>

namespace corvandi {
namespace {

/// Of 32 bytes in base64, with the padding that Qt would do without.
constexpr qsizetype encodedLength = 44;

const unsigned char* bytesOf(const QByteArray& array)
{
    return reinterpret_cast<const unsigned char*>(array.constData());
}

} // namespace

PublicKey::PublicKey(QByteArray bytes)
    : bytes_(std::move(bytes))
{
}

std::optional<PublicKey> PublicKey::fromBase64(const QByteArray& text)
{
    const auto bytes = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!bytes || text.size() != encodedLength || (*bytes).size() != crypto_sign_PUBLICKEYBYTES ||
        sodium_init() < 0 || crypto_core_ed25519_is_valid_point(bytesOf(*bytes)) != 1)
        return std::nullopt;
    return PublicKey(*bytes);
}

bool PublicKey::hasSigned(const QByteArray& message, const QByteArray& signature) const
{
    return signature.size() == crypto_sign_BYTES &&
           crypto_sign_verify_detached(bytesOf(signature), bytesOf(message),
                                       static_cast<unsigned long long>(message.size()), bytesOf(bytes_)) == 0;
}

} // namespace corvandi
