#include "platform/linux/language_model/server_search.h"

#include "platform/linux/language_model/server_inquiry.h"
#include "platform/linux/language_model/stoppable_loop.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace corvandi {
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
        inquiries.push_back(std::make_unique<ServerInquiry>(network, server, search.wantedModel, [&] {
            if (isDecided(inquiries))
                loop.quit();
        }));
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &limit, [&loop] { loop.quit(); });
    limit.start(static_cast<int>(deadline.remainingTime()));
    if (!servers.empty())
        loop.run();

    ServerFindings findings;
    for (const auto& inquiry : inquiries) {
        if (inquiry->verdict() == Verdict::found)
            return {
                LanguageModelAvailability::available, ModelPlace{inquiry->server(), *inquiry->model()}, {}};
        if (inquiry->verdict() != Verdict::none)
            findings.availability = LanguageModelAvailability::modelNotReady;
        if (findings.complaint.isEmpty())
            findings.complaint = inquiry->complaint();
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

} // namespace

ServerFindings findModel(const ServerSearch& search, const std::stop_token& stop)
{
    const QDeadlineTimer deadline(search.patience);
    const auto network = makeLoopbackNetwork();
    if (search.lastServer) {
        ServerFindings findings = ask(*network, search, {*search.lastServer}, deadline, stop);
        if (findings.place || deadline.hasExpired())
            return findings;
    }
    ServerFindings findings = ask(*network, search, search.servers, deadline, stop);
    if (!search.areNamed)
        findings.complaint.clear();
    if (findings.availability == LanguageModelAvailability::otherReason && findings.complaint.isEmpty())
        findings.availability = reasonForNone(search);
    return findings;
}

} // namespace corvandi
