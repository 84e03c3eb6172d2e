#pragma once

#include "shell/updates/update_failure.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace corvandi {

/// What went wrong with a request that did not get its answer, or not all of it.
[[nodiscard]] UpdateFailure failureOf(const QNetworkReply& reply);

/// How much patience a server is given.
struct HttpPatience {
    /// Without a byte, while connecting and later.
    std::chrono::milliseconds idle;
    /// Altogether.
    std::chrono::milliseconds total;
};

/// One file, fetched by GET over HTTPS, or over HTTP from this machine (see `isUpdateAddress`).
///
/// The request says nothing about the person or the program: no cookies, no referrer, no credentials,
/// no language, and the bare name "Corvandi" as its agent. Certificates are checked, and an answer that
/// is compressed is not unpacked. Up to five redirections are followed, none of them away from HTTPS.
///
/// Bytes go to a sink as they come; the sink may refuse to go on. The end is told once, later. An answer
/// that ends before the length that the server announced is `incomplete`. Destroying the download closes
/// the connection, and nothing is told any more.
///
/// Thread: the one that created it, which needs an event loop. Bounded memory, whatever the server sends.
class HttpDownload : public QObject {
public:
    /// Takes a piece of the file; a failure ends the download.
    using Sink = std::function<std::optional<UpdateFailure>(std::string_view)>;
    /// Nothing: the answer was 200 and is complete.
    using Finished = std::function<void(std::optional<UpdateFailure>)>;

    HttpDownload(const QUrl& url, const HttpPatience& patience, Sink sink, Finished finished);
    ~HttpDownload() override;

private:
    void request(const QUrl& url);
    void headersArrived();
    void follow(const QByteArray& location);
    void bytesArrived();
    void replyFinished();
    void end(std::optional<UpdateFailure> failure);

    QNetworkAccessManager network_;
    std::unique_ptr<QNetworkReply, void (*)(QNetworkReply*)> reply_;
    QTimer idleTimer_;
    QTimer totalTimer_;
    Sink sink_;
    Finished finished_;
    bool hasEnded_ = false;
    int redirections_ = 0;
};

} // namespace corvandi
