#include "system/language_model/chat_exchange.h"

#include "base/json.h"
#include "system/language_model/chat_answer.h"
#include "system/language_model/known_servers.h"
#include "system/net/http_fetch.h"

#include <chrono>

namespace corvandi {

QByteArray chatRequest(const QString& model, const QString& instructions, const QString& prompt)
{
    const auto message = [](const char* role, const QString& content) {
        return Json{{"role", role}, {"content", content.toStdString()}};
    };
    const Json request{
        {"model", model.toStdString()},
        {"messages", Json::array({message("system", instructions), message("user", prompt)})},
        {"stream", true},
    };
    return QByteArray::fromStdString(request.dump());
}

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
    case HttpEnd::Kind::notUnderstood:
    case HttpEnd::Kind::insecure:
    case HttpEnd::Kind::timedOut:
        break;
    }
    return LanguageModelFailure{QStringLiteral("the connection to the model server broke off")};
}

} // namespace

LanguageModelAnswer askModel(const ModelPlace& place, const QString& instructions, const QString& prompt,
                             const std::stop_token& stop)
{
    // The server that was found may have gone, and anybody may have taken its place.
    if (ownerOf(place.server, SocketTables::ofThisMachine()) == ListenerOwner::somebodyElse)
        return LanguageModelFailure{QStringLiteral("the model server belongs to another user")};
    ChatAnswer answer;
    const std::optional<HttpEnd> end = fetch(
        {.url = protocolAddress(place.server, QStringLiteral("chat/completions")),
         .json = chatRequest(place.model, instructions, prompt)},
        [&answer](const QByteArray& bytes) { return answer.feed(bytes); }, stop);
    return outcomeOf(end, answer);
}

QByteArray warmUpRequest(const QString& model)
{
    const Json request{
        {"model", model.toStdString()},
        {"messages", Json::array({Json{{"role", "user"}, {"content", "Hi"}}})},
        {"max_tokens", 1},
        {"stream", false},
    };
    return QByteArray::fromStdString(request.dump());
}

bool warmUpModel(const ModelPlace& place, const std::stop_token& stop)
{
    constexpr std::chrono::minutes longestLoading{5};
    const std::optional<HttpEnd> end = fetch(
        {.url = protocolAddress(place.server, QStringLiteral("chat/completions")),
         .json = warmUpRequest(place.model),
         .totalLimit = longestLoading},
        [](const QByteArray&) { return true; }, stop);
    return end && end->kind == HttpEnd::Kind::answered;
}

} // namespace corvandi
