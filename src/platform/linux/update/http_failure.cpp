#include "platform/linux/update/http_failure.h"

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;

Kind kindOf(const QNetworkReply& reply)
{
    switch (reply.error()) {
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return Kind::insecure;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::timedOut;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return Kind::refused;
    case QNetworkReply::RemoteHostClosedError:
        // Once there was a status the answer had begun.
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() ? Kind::incomplete
                                                                                   : Kind::unreachable;
    default:
        return Kind::unreachable;
    }
}

} // namespace

UpdateFailure failureOf(const QNetworkReply& reply)
{
    return {kindOf(reply), reply.errorString()};
}

} // namespace corvandi
