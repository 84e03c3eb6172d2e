#include "signer.h"

#include <sodium.h>

#include <stdexcept>

namespace corvandi::testing {
namespace {

unsigned char* bytesOf(QByteArray& array)
{
    return reinterpret_cast<unsigned char*>(array.data());
}

} // namespace

Signer::Signer()
    : public_(crypto_sign_PUBLICKEYBYTES, '\0')
    , secret_(crypto_sign_SECRETKEYBYTES, '\0')
{
    if (sodium_init() < 0 || crypto_sign_keypair(bytesOf(public_), bytesOf(secret_)) != 0)
        throw std::runtime_error("no key pair");
}

QByteArray Signer::sign(const QByteArray& message) const
{
    QByteArray signature(crypto_sign_BYTES, '\0');
    crypto_sign_detached(bytesOf(signature), nullptr, reinterpret_cast<const unsigned char*>(message.data()),
                         static_cast<unsigned long long>(message.size()),
                         reinterpret_cast<const unsigned char*>(secret_.data()));
    return signature;
}

QByteArray Signer::feed(const QByteArray& manifest) const
{
    return "corvandi-update-1 " + sign("corvandi-update-1\n" + manifest).toBase64() + '\n' + manifest;
}

} // namespace corvandi::testing
