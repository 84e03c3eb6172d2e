#pragma once

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace corvandi {

/// A request that says nothing about the person or the program: no cookies, no referrer, no credentials,
/// no language, and the bare name "Corvandi" as its agent. Redirections are not followed, nothing is kept
/// in a cache, and an answer that is compressed is not unpacked.
///
/// Thread: any.
[[nodiscard]] QNetworkRequest plainRequest(const QUrl& url);

/// Bounds what the network holds of an answer until it is read. To be called where the request was made,
/// in the same turn of the event loop.
void limitReadBuffer(QNetworkReply& reply, qint64 bytes);

} // namespace corvandi
