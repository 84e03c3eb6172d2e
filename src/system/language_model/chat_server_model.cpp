#include "system/language_model/chat_server_model.h"

#include "system/language_model/chat_exchange.h"
#include "system/language_model/known_servers.h"

#include <utility>

namespace corvandi {
namespace {

const QString enabledKey = QStringLiteral("rewriteServerEnabled");
const QString serverKey = QStringLiteral("rewriteServer");
const QString modelKey = QStringLiteral("rewriteModel");

} // namespace

void RewritePreferences::registerDefaults(UserDefaults& defaults)
{
    defaults.registerDefaults({{enabledKey, true}});
}

RewritePreferences RewritePreferences::read(const UserDefaults& defaults)
{
    const QString server = defaults.string(serverKey).value_or(QString()).trimmed();
    RewritePreferences preferences{
        .isEnabled = defaults.boolean(enabledKey),
        .servers = server.isEmpty() ? std::vector<QUrl>() : serverAddresses(server),
        .isRefused = false,
        .model = defaults.string(modelKey).value_or(QString()).trimmed(),
    };
    preferences.isRefused = !server.isEmpty() && preferences.servers.empty();
    return preferences;
}

namespace {

using namespace std::chrono_literals;

/// How old findings may be.
constexpr MainQueue::Duration freshness = 2s;
/// The search has its own limit for the servers' answers; this one is for a disk or a machine that
/// does not get round to it.
constexpr MainQueue::Duration searchLimit = 1500ms;
/// The servers that unload their models do so after five minutes, unless they are told otherwise.
constexpr MainQueue::Duration staysLoaded = 4min;
/// Enough for the questions of the present and those that are just being given up.
constexpr size_t mostThreads = 8;

} // namespace

/// Somebody who wants to know when the findings are fresh.
class ChatServerModel::Look : public Registration {
public:
    Look(ChatServerModel& model, std::function<void()> done)
        : model_(model)
        , done_(std::move(done))
    {
        model_.waiting_.push_back(this);
    }
    ~Look() override { std::erase(model_.waiting_, this); }
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;

    /// To be told in a turn of its own: `done` may do anything, also to other looks.
    void end()
    {
        turn_ = model_.queue_.after({}, [this] {
            const auto call = std::move(done_);
            call();
        });
    }

private:
    ChatServerModel& model_;
    std::function<void()> done_;
    std::unique_ptr<Timer> turn_;
};

class ChatServerModel::Session : public LanguageModelSession {
public:
    Session(ChatServerModel& model, QString instructions)
        : model_(model)
        , instructions_(std::move(instructions))
    {
    }

    ~Session() override
    {
        // A server that was loading its model gives that up now.
        if (asked_)
            model_.takeSign(*asked_, false);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void respond(const QString& prompt, std::function<void(LanguageModelAnswer)> done) override
    {
        asked_ = model_.findings_.place;
        question_ = std::make_unique<Errand<LanguageModelAnswer>>(
            model_.worker_, model_.queue_,
            [place = asked_, instructions = instructions_,
             prompt](const std::stop_token& stop) -> LanguageModelAnswer {
                if (!place)
                    return LanguageModelFailure{QStringLiteral("there is no language model")};
                return askModel(*place, instructions, prompt, stop);
            },
            [this, done = std::move(done)](LanguageModelAnswer answer) {
                if (const auto place = std::exchange(asked_, std::nullopt))
                    model_.takeSign(*place, std::holds_alternative<QString>(answer));
                // It may destroy this session.
                const auto call = done;
                call(std::move(answer));
            });
    }

private:
    ChatServerModel& model_;
    QString instructions_;
    /// Who has not answered yet.
    std::optional<ModelPlace> asked_;
    std::unique_ptr<Errand<LanguageModelAnswer>> question_;
};

ChatServerModel::Machine ChatServerModel::Machine::thisOne()
{
    Machine machine{{}, InstallationFolders::ofThisMachine(), usableMemory()};
    for (const quint16 port : usualServerPorts())
        machine.usualServers.push_back(serverAddress(port));
    return machine;
}

ChatServerModel::ChatServerModel(MainQueue& queue, UserDefaults& defaults, SystemLog& log, Machine machine)
    : queue_(queue)
    , defaults_(defaults)
    , log_(log)
    , machine_(std::move(machine))
    , worker_(QStringLiteral("language model"), Worker::AtEnd::stop, Worker::usualPatience, mostThreads)
{
    RewritePreferences::registerDefaults(defaults_);
}

ChatServerModel::~ChatServerModel() = default;

LanguageModelAvailability ChatServerModel::availability()
{
    const bool isLoading = warmUp_ && findings_.place == warmed_;
    return isLoading ? LanguageModelAvailability::modelNotReady : findings_.availability;
}

std::optional<QString> ChatServerModel::modelName()
{
    return findings_.place ? std::optional(findings_.place->model) : std::nullopt;
}

void ChatServerModel::warmUp()
{
    if (!search_ && !isFresh())
        beginSearch();
    isWarmUpWanted_ = search_ != nullptr;
    // What was there last time is there still, as a rule.
    beginWarmUp();
}

bool ChatServerModel::isWarm() const
{
    return lastAnswer_ && queue_.now() - *lastAnswer_ < staysLoaded;
}

void ChatServerModel::beginWarmUp()
{
    if (!findings_.place)
        return;
    if (warmed_ != findings_.place) {
        warmUp_.reset();
        lastAnswer_.reset();
        warmed_ = findings_.place;
    }
    if (warmUp_ || isWarm())
        return;
    warmUp_ = std::make_unique<Errand<bool>>(
        worker_, queue_, [place = *warmed_](const std::stop_token& stop) { return warmUpModel(place, stop); },
        [this](bool hasAnswered) {
            warmUp_.reset();
            takeSign(*warmed_, hasAnswered);
        });
}

void ChatServerModel::takeSign(const ModelPlace& place, bool hasAnswered)
{
    if (place == warmed_)
        lastAnswer_ = hasAnswered ? std::optional(queue_.now()) : std::nullopt;
}

std::unique_ptr<Registration> ChatServerModel::refreshAvailability(std::function<void()> done)
{
    auto look = std::make_unique<Look>(*this, std::move(done));
    if (!search_ && !isFresh())
        beginSearch();
    // A search that is under way ends for all.
    if (!search_)
        look->end();
    return look;
}

std::unique_ptr<LanguageModelSession> ChatServerModel::makeSession(const QString& instructions)
{
    return std::make_unique<Session>(*this, instructions);
}

bool ChatServerModel::isFresh() const
{
    return asOf_ && queue_.now() - *asOf_ <= freshness;
}

void ChatServerModel::beginSearch()
{
    searchBegan_ = queue_.now();
    const RewritePreferences preferences = RewritePreferences::read(defaults_);
    if (preferences.isRefused) {
        endSearch(
            {LanguageModelAvailability::otherReason, std::nullopt,
             QStringLiteral("the rewriteServer of the preferences is no http:// address of this machine")});
    } else if (!preferences.isEnabled) {
        endSearch({LanguageModelAvailability::appleIntelligenceNotEnabled, std::nullopt, {}});
    } else {
        search_ = std::make_unique<Errand<ServerFindings>>(
            worker_, queue_,
            [search = makeSearch(preferences)](const std::stop_token& stop) {
                return findModel(search, stop);
            },
            [this](ServerFindings findings) { endSearch(std::move(findings)); });
        searchLimit_ = queue_.after(searchLimit, [this] {
            endSearch({LanguageModelAvailability::modelNotReady, std::nullopt, {}});
        });
    }
}

ServerSearch ChatServerModel::makeSearch(const RewritePreferences& preferences) const
{
    const bool areNamed = !preferences.servers.empty();
    ServerSearch search{
        .servers = areNamed ? preferences.servers : machine_.usualServers,
        .areNamed = areNamed,
        .wantedModel = preferences.model,
        .lastServer = std::nullopt,
        .folders = machine_.folders,
        .memory = machine_.memory,
    };
    // The preferences may have changed since.
    if (findings_.place && std::ranges::find(search.servers, findings_.place->server) != search.servers.end())
        search.lastServer = findings_.place->server;
    return search;
}

void ChatServerModel::endSearch(ServerFindings findings)
{
    search_.reset();
    searchLimit_.reset();
    findings_ = std::move(findings);
    asOf_ = searchBegan_;
    complain(findings_.complaint);
    if (std::exchange(isWarmUpWanted_, false))
        beginWarmUp();
    for (Look* look : std::exchange(waiting_, {}))
        look->end();
}

void ChatServerModel::complain(const QString& complaint)
{
    if (complaint != std::exchange(lastComplaint_, complaint) && !complaint.isEmpty())
        log_.write(complaint);
}

} // namespace corvandi
