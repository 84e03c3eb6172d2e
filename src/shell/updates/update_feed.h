#pragma once

#include "shell/updates/release.h"
#include "shell/updates/update_failure.h"

#include <QByteArray>

#include <optional>

namespace corvandi {

/// The feed is one text: a line with a signature, then the manifest that it signs.
///
///     corvandi-update-1 <Ed25519 signature, base64, 88 characters>
///     {
///         "version": "1.2.0",
///         "package": "https://example.org/corvandi-1.2.0.deb",
///         "length": 1234567,
///         "sha512": "<128 hexadecimal digits>",
///         "notes": "What is new.",
///         "minimumSystem": { "debian": "12" }
///     }
///
/// Nothing in the manifest is looked at before the signature has been found right. As the signature
/// covers version, length and digest together, neither can an old package be passed off as a newer
/// release, nor another file as the package.
struct SignedManifest {
    /// 64 bytes.
    QByteArray signature;
    QByteArray manifest;

    /// What is signed: "corvandi-update-1", a line feed, and the manifest byte by byte. The first line
    /// keeps a signature that was made for another purpose from being taken for this one.
    [[nodiscard]] QByteArray signedText() const;
};

/// Nothing when the first line is not as above.
[[nodiscard]] std::optional<SignedManifest> splitFeed(const QByteArray& feed);

/// Reads a manifest that came from `feed`: a JSON object in UTF-8. "notes" and "minimumSystem" may be
/// missing, unknown members are ignored. The package is an address that `feed` may lead to (see
/// `mayLeadTo`), with a path that ends in .deb, .rpm or .flatpak. Anything else is `unreadable`.
///
/// Thread: any.
[[nodiscard]] UpdateResult<Release> readManifest(const QByteArray& manifest, const QUrl& feed);

} // namespace corvandi
