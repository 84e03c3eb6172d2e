#include "platform/linux/language_model/server_inquiry.h"

#include "platform/linux/language_model/server_address.h"

namespace corvandi {
namespace {

/// More models than anybody has.
constexpr qsizetype longestList = 1024 * 1024;
/// Sent by servers that are loading their model.
constexpr int serviceUnavailable = 503;

} // namespace

ServerInquiry::ServerInquiry(QNetworkAccessManager& network, const QUrl& server, QString wantedModel,
                             std::function<void()> answered)
    : server_(server)
    , wantedModel_(std::move(wantedModel))
    , exchange_(
          network, protocolAddress(server, QStringLiteral("models")),
          [this](const QByteArray& bytes) { return take(bytes); },
          [this, answered = std::move(answered)](const HttpEnd& end) {
              if (end.kind == HttpEnd::Kind::answered && answer_.size() <= longestList)
                  models_ = readModelList(answer_);
              answered();
          })
{
}

bool ServerInquiry::take(const QByteArray& bytes)
{
    answer_ += bytes;
    return answer_.size() <= longestList;
}

ServerInquiry::Verdict ServerInquiry::verdict() const
{
    if (!exchange_.ended())
        return Verdict::open;
    if (models_)
        return model() ? Verdict::found : Verdict::notReady;
    return exchange_.ended()->status == serviceUnavailable ? Verdict::notReady : Verdict::none;
}

std::optional<QString> ServerInquiry::model() const
{
    return models_ ? chooseModel(*models_, wantedModel_) : std::nullopt;
}

QString ServerInquiry::complaint() const
{
    const std::optional<HttpEnd>& end = exchange_.ended();
    if (!end)
        return QStringLiteral("does not answer");
    switch (end->kind) {
    case HttpEnd::Kind::unreachable:
        return {};
    case HttpEnd::Kind::brokenOff:
        return QStringLiteral("broke off");
    case HttpEnd::Kind::status:
        return QStringLiteral("answers with HTTP %1").arg(end->status);
    case HttpEnd::Kind::answered:
        break;
    }
    if (!models_)
        return QStringLiteral("has no list of models at %1")
            .arg(protocolAddress(server_, QStringLiteral("models")).path());
    return model() ? QString() : QStringLiteral("does not have the model");
}

} // namespace corvandi
