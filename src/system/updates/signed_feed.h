#pragma once

#include <QByteArray>

#include <optional>

namespace corvandi {

/// The feed is one text: a line with a signature, then the manifest that it signs (see docs/updates.md).
///
///     corvandi-update-1 <Ed25519 signature, base64, 88 characters>
///     { ... }
///
/// Nothing in the manifest is looked at before the signature has been found right.
struct SignedFeed {
    /// 64 bytes.
    QByteArray signature;
    QByteArray manifest;

    /// Nothing when the first line is not as above.
    [[nodiscard]] static std::optional<SignedFeed> split(const QByteArray& feed);

    /// What is signed: "corvandi-update-1", a line feed, and the manifest byte by byte. The first line
    /// keeps a signature that was made for another purpose from being taken for this one.
    [[nodiscard]] QByteArray signedText() const;
};

} // namespace corvandi
