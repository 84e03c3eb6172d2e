#pragma once

#include <QByteArray>

namespace corvandi::testing {

/// The makers, who sign releases; a fresh key each.
class Signer {
public:
    Signer();

    /// The public key in base64.
    [[nodiscard]] QByteArray publicKey() const { return public_.toBase64(); }
    [[nodiscard]] QByteArray sign(const QByteArray& message) const;
    /// A feed with this manifest.
    [[nodiscard]] QByteArray feed(const QByteArray& manifest) const;

private:
    QByteArray public_;
    QByteArray secret_;
};

} // namespace corvandi::testing
