#include "system/net/plain_request.h"

namespace corvandi {

QNetworkRequest plainRequest(const QUrl& url)
{
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", "Corvandi");
    // Qt would tell the person's language otherwise, and unpack what is compressed.
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

void limitReadBuffer(QNetworkReply& reply, qint64 bytes)
{
    // Qt forgets the size when it is set before the request is under way, which it is in the next turn.
    QMetaObject::invokeMethod(
        &reply, [&reply, bytes] { reply.setReadBufferSize(bytes); }, Qt::QueuedConnection);
}

} // namespace corvandi
