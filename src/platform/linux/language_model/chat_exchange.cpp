#include "platform/linux/language_model/chat_exchange.h"

#include "platform/linux/language_model/chat_answer.h"
#include "platform/linux/language_model/chat_request.h"
#include "platform/linux/language_model/http_exchange.h"
#include "platform/linux/language_model/server_address.h"
#include "platform/linux/language_model/stoppable_loop.h"

namespace corvandi {
namespace {

LanguageModelAnswer outcomeOf(const std::optional<HttpEnd>& end, ChatAnswer& answer)
{
    if (!end)
        return LanguageModelFailure{QStringLiteral("cancelled")};
    switch (end->kind) {
    case HttpEnd::Kind::answered:
        return answer.finish();
    case HttpEnd::Kind::status:
        return LanguageModelFailure{QStringLiteral("the model server answers with HTTP %1").arg(end->status)};
    case HttpEnd::Kind::unreachable:
        return LanguageModelFailure{QStringLiteral("the model server does not run any more")};
    case HttpEnd::Kind::brokenOff:
        break;
    }
    return LanguageModelFailure{QStringLiteral("the connection to the model server broke off")};
}

} // namespace

LanguageModelAnswer askModel(const ModelPlace& place, const QString& instructions, const QString& prompt,
                             const std::stop_token& stop)
{
    StoppableLoop loop(stop);
    ChatAnswer answer;
    const auto network = makeLoopbackNetwork();
    const HttpExchange exchange(
        *network, protocolAddress(place.server, QStringLiteral("chat/completions")),
        chatRequest(place.model, instructions, prompt),
        [&answer](const QByteArray& bytes) { return answer.feed(bytes); },
        [&loop](const HttpEnd&) { loop.quit(); });
    loop.run();
    return outcomeOf(exchange.ended(), answer);
}

} // namespace corvandi
