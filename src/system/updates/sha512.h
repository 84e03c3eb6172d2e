#pragma once

#include <QByteArray>

#include <sodium/crypto_hash_sha512.h>

#include <string_view>

namespace corvandi {

/// Computes the SHA-512 digest of bytes that come piece by piece.
class Sha512 {
public:
    Sha512() { crypto_hash_sha512_init(&state_); }

    void add(std::string_view bytes)
    {
        crypto_hash_sha512_update(&state_, reinterpret_cast<const unsigned char*>(bytes.data()),
                                  bytes.size());
    }
    /// Of everything added; called once, at the end.
    [[nodiscard]] QByteArray digest()
    {
        QByteArray result(crypto_hash_sha512_BYTES, Qt::Uninitialized);
        crypto_hash_sha512_final(&state_, reinterpret_cast<unsigned char*>(result.data()));
        return result;
    }

private:
    crypto_hash_sha512_state state_{};
};

} // namespace corvandi
