#pragma once

#include <QByteArray>

#include <optional>

namespace corvandi {

/// The Ed25519 key that the makers' signatures are checked with.
///
/// Thread: any.
class PublicKey {
public:
    /// From its 32 bytes in base64 (44 characters). Nothing when that is no usable key.
    [[nodiscard]] static std::optional<PublicKey> fromBase64(const QByteArray& text);

    /// Whether `signature` (of any length) is this key's for `message`.
    [[nodiscard]] bool hasSigned(const QByteArray& message, const QByteArray& signature) const;

private:
    explicit PublicKey(QByteArray bytes);

    QByteArray bytes_;
};

} // namespace corvandi
