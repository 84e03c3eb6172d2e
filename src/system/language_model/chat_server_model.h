#pragma once

#include "base/main_queue.h"
#include "base/worker.h"
#include "ports/language_model.h"
#include "ports/system_log.h"
#include "ports/user_defaults.h"
#include "system/language_model/server_search.h"

#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// What the user has said about the model server.
struct RewritePreferences {
    /// "rewriteServerEnabled": whether a server may be asked at all. True when absent.
    bool isEnabled = true;
    /// "rewriteServer": its addresses; empty when the usual ones are to be tried, or none is valid.
    std::vector<QUrl> servers;
    /// Whether "rewriteServer" names something else than an address of this machine.
    bool isRefused = false;
    /// "rewriteModel": the model's name; empty when any will do.
    QString model;

    /// Registers the defaults of these keys.
    static void registerDefaults(UserDefaults& defaults);
    [[nodiscard]] static RewritePreferences read(const UserDefaults& defaults);
};

/// A language model behind a server on this machine that speaks the chat-completions protocol over HTTP:
/// the one in the preferences (see `RewritePreferences`), or else the first one at the usual ports that
/// has a model. Only loopback addresses are ever connected to, directly and by number.
///
/// Available: a server has the model. `modelNotReady`: a server is there but it is loading, slow to
/// answer, or lacks the model. `appleIntelligenceNotEnabled`: switched off in the preferences, or a server
/// is installed or named there but does not run. `deviceNotEligible`: none of that, and less than 4 GiB of
/// memory. A named server that answers something else, or has an address elsewhere, is `otherReason`, and
/// the log says why.
///
/// A model that has not answered for four minutes may have been unloaded: `warmUp` asks it for one token, for
/// as long as it takes to load, and until it has answered it is `modelNotReady`. When it refuses, it counts
/// as before; the next warm-up tries again.
///
/// Each look and each question runs on a thread that ends with it and closes its connections. While nobody
/// asks there is no thread, timer or connection.
///
/// Thread: main thread only.
class ChatServerModel : public LanguageModel {
public:
    /// What of the machine counts; the tests have their own.
    struct Machine {
        std::vector<QUrl> usualServers;
        InstallationFolders folders;
        quint64 memory = 0;

        [[nodiscard]] static Machine thisOne();
    };

    /// All outlive the model.
    ChatServerModel(MainQueue& queue, UserDefaults& defaults, SystemLog& log,
                    Machine machine = Machine::thisOne());
    ~ChatServerModel() override;
    ChatServerModel(const ChatServerModel&) = delete;
    ChatServerModel& operator=(const ChatServerModel&) = delete;

    [[nodiscard]] LanguageModelAvailability availability() override;
    [[nodiscard]] std::unique_ptr<Registration> refreshAvailability(std::function<void()> done) override;
    [[nodiscard]] std::optional<QString> modelName() override;
    void warmUp() override;
    [[nodiscard]] std::unique_ptr<LanguageModelSession> makeSession(const QString& instructions) override;

private:
    class Look;
    class Session;

    [[nodiscard]] bool isFresh() const;
    void beginSearch();
    [[nodiscard]] ServerSearch makeSearch(const RewritePreferences& preferences) const;
    void endSearch(ServerFindings findings);
    void complain(const QString& complaint);
    [[nodiscard]] bool isWarm() const;
    void beginWarmUp();
    /// The model has answered a question, or left it unanswered.
    void takeSign(const ModelPlace& place, bool hasAnswered);

    MainQueue& queue_;
    UserDefaults& defaults_;
    SystemLog& log_;
    Machine machine_;
    ServerFindings findings_;
    /// When the search began that gave them.
    std::optional<MainQueue::Duration> asOf_;
    MainQueue::Duration searchBegan_{};
    QString lastComplaint_;
    /// Those who wait for the search.
    std::vector<Look*> waiting_;
    Worker worker_;
    std::unique_ptr<Errand<ServerFindings>> search_;
    std::unique_ptr<Timer> searchLimit_;
    /// The model that is or was warmed up, and when it has last answered.
    std::optional<ModelPlace> warmed_;
    std::optional<MainQueue::Duration> lastAnswer_;
    std::unique_ptr<Errand<bool>> warmUp_;
    /// What the search finds is to be warmed up.
    bool isWarmUpWanted_ = false;
};

} // namespace corvandi
