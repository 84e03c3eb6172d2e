#include "system/language_model/server_search.h"

#include "base/error.h"
#include "base/json.h"
#include "system/language_model/known_servers.h"
#include "system/net/stoppable_loop.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <memory>

namespace corvandi {
namespace {

QString idOf(const Json& model)
{
    return stringMember(model, "id");
}

/// Servers list their models for search beside those that converse, some of them first.
bool isForConversation(const QString& model)
{
    return !model.contains(QLatin1String("embed"), Qt::CaseInsensitive) &&
           !model.contains(QLatin1String("rerank"), Qt::CaseInsensitive);
}

/// Such models have this at the end of their tag, or as all of it.
bool isElsewhere(const QString& model)
{
    return model.endsWith(QLatin1String("-cloud"), Qt::CaseInsensitive) ||
           model.endsWith(QLatin1String(":cloud"), Qt::CaseInsensitive);
}

} // namespace

std::optional<std::vector<QString>> readModelList(const QByteArray& json)
{
    try {
        return readEach(arrayMember(parseJson(json), "data"), idOf);
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::optional<QString> chooseModel(const std::vector<QString>& models, const QString& wanted)
{
    const auto suits = [&wanted](const QString& model) {
        if (wanted.isEmpty())
            return isForConversation(model) && !isElsewhere(model);
        return model == wanted || model == wanted + QLatin1String(":latest");
    };
    const auto found = std::ranges::find_if(models, suits);
    return found == models.end() ? std::nullopt : std::optional(*found);
}

namespace {

/// More models than anybody has.
constexpr qsizetype longestList = 1024 * 1024;
/// Sent by servers that are loading their model.
constexpr int serviceUnavailable = 503;

} // namespace

ServerInquiry::ServerInquiry(QNetworkAccessManager& network, const QUrl& server, QString wantedModel,
                             std::chrono::milliseconds patience, std::function<void()> answered)
    : server_(server)
    , wantedModel_(std::move(wantedModel))
    , answer_(longestList)
    , fetch_(
          network, {.url = protocolAddress(server, QStringLiteral("models")), .totalLimit = patience},
          [this](const QByteArray& bytes) { return answer_.take(bytes); },
          [this, answered = std::move(answered)](const HttpEnd& end) {
              if (end.kind == HttpEnd::Kind::answered && !answer_.isTooLong())
                  models_ = readModelList(answer_.bytes());
              answered();
          })
{
}

ServerInquiry::Verdict ServerInquiry::verdict() const
{
    const std::optional<HttpEnd>& end = fetch_.ended();
    if (!end)
        return Verdict::open;
    if (models_)
        return model() ? Verdict::found : Verdict::notReady;
    const bool isBusy = end->kind == HttpEnd::Kind::timedOut || end->status == serviceUnavailable;
    return isBusy ? Verdict::notReady : Verdict::none;
}

std::optional<QString> ServerInquiry::model() const
{
    return models_ ? chooseModel(*models_, wantedModel_) : std::nullopt;
}

QString ServerInquiry::complaint() const
{
    const std::optional<HttpEnd>& end = fetch_.ended();
    if (!end)
        return QStringLiteral("does not answer");
    switch (end->kind) {
    case HttpEnd::Kind::unreachable:
        return {};
    case HttpEnd::Kind::timedOut:
        return QStringLiteral("does not answer");
    case HttpEnd::Kind::brokenOff:
    case HttpEnd::Kind::notUnderstood:
    case HttpEnd::Kind::insecure:
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

namespace {

using Verdict = ServerInquiry::Verdict;
using Inquiries = std::vector<std::unique_ptr<ServerInquiry>>;

/// Models that write tolerable prose need 4 GiB; of so much the firmware and the kernel keep a part.
constexpr quint64 leastMemory = quint64{7} << 29;

/// Whether later answers can't change the outcome: a server counts only if those before it don't.
bool isDecided(const Inquiries& inquiries)
{
    for (const auto& inquiry : inquiries) {
        if (inquiry->verdict() == Verdict::found)
            return true;
        if (inquiry->verdict() == Verdict::open)
            return false;
    }
    return true;
}

/// Asks all of these servers at the same time.
ServerFindings ask(QNetworkAccessManager& network, const ServerSearch& search,
                   const std::vector<QUrl>& servers, const QDeadlineTimer& deadline,
                   const std::stop_token& stop)
{
    StoppableLoop loop(stop);
    Inquiries inquiries;
    for (const QUrl& server : servers)
        inquiries.push_back(std::make_unique<ServerInquiry>(
            network, server, search.wantedModel, std::chrono::milliseconds(deadline.remainingTime()), [&] {
                if (isDecided(inquiries))
                    loop.quit();
            }));
    if (!servers.empty())
        loop.run();

    ServerFindings findings;
    for (const auto& inquiry : inquiries) {
        if (inquiry->verdict() == Verdict::found)
            return {
                LanguageModelAvailability::available, ModelPlace{inquiry->server(), *inquiry->model()}, {}};
        if (inquiry->verdict() != Verdict::none)
            findings.availability = LanguageModelAvailability::modelNotReady;
        if (const QString complaint = inquiry->complaint();
            !complaint.isEmpty() && findings.complaint.isEmpty())
            findings.complaint = QStringLiteral("the rewriteServer of the preferences ") + complaint;
    }
    return findings;
}

/// Why there is no server, for want of one that answers.
LanguageModelAvailability reasonForNone(const ServerSearch& search)
{
    if (search.areNamed || isModelServerInstalled(search.folders))
        return LanguageModelAvailability::appleIntelligenceNotEnabled;
    if (search.memory < leastMemory)
        return LanguageModelAvailability::deviceNotEligible;
    return LanguageModelAvailability::otherReason;
}

/// Takes the servers of other users out of the search; returns what the log says of them.
QString leaveOutStrangers(ServerSearch& search)
{
    const SocketTables sockets = SocketTables::ofThisMachine();
    QString complaint;
    std::erase_if(search.servers, [&](const QUrl& server) {
        if (ownerOf(server, sockets) != ListenerOwner::somebodyElse)
            return false;
        complaint = QStringLiteral("the model server at %1 belongs to another user, and is not asked")
                        .arg(server.toDisplayString());
        return true;
    });
    if (search.lastServer && std::ranges::find(search.servers, *search.lastServer) == search.servers.end())
        search.lastServer.reset();
    return complaint;
}

} // namespace

ServerFindings findModel(ServerSearch search, const std::stop_token& stop)
{
    const QDeadlineTimer deadline(search.patience);
    const auto network = makeNetwork();
    const QString strangers = leaveOutStrangers(search);
    ServerFindings findings;
    if (search.lastServer)
        findings = ask(*network, search, {*search.lastServer}, deadline, stop);
    if (!findings.place && !deadline.hasExpired())
        findings = ask(*network, search, search.servers, deadline, stop);
    if (!strangers.isEmpty())
        findings.complaint = strangers;
    else if (!search.areNamed)
        findings.complaint.clear();
    if (findings.availability == LanguageModelAvailability::otherReason && findings.complaint.isEmpty())
        findings.availability = reasonForNone(search);
    return findings;
}

} // namespace corvandi
