#pragma once

#include "ports/language_model.h"
#include "system/language_model/known_servers.h"
#include "system/net/http_fetch.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace corvandi {

/// The names in a server's list of models, in its order; nothing when it is no such list.
[[nodiscard]] std::optional<std::vector<QString>> readModelList(const QByteArray& json);

/// The model that rewrites: the one that is called `wanted` (a tag ":latest" may be left out), or when
/// that is empty the first one that is not for other things than conversation, and does its work on this
/// machine: some servers list models beside their own that only pass on what they are told. Nothing when
/// there is none.
[[nodiscard]] std::optional<QString> chooseModel(const std::vector<QString>& models, const QString& wanted);

/// The question to one server which models it has, and what follows from the answer.
///
/// Thread: that of the network, whose event loop must run.
class ServerInquiry {
public:
    enum class Verdict {
        /// No answer so far.
        open,
        /// There is a model.
        found,
        /// It is a model server that has no model to offer, or not yet.
        notReady,
        /// There is no model server at the address.
        none,
    };

    /// Waits for the answer no longer than `patience`. `answered` runs once, later; it must not destroy the
    /// inquiry.
    ServerInquiry(QNetworkAccessManager& network, const QUrl& server, QString wantedModel,
                  std::chrono::milliseconds patience, std::function<void()> answered);

    [[nodiscard]] const QUrl& server() const { return server_; }
    [[nodiscard]] Verdict verdict() const;
    /// The model, when there is one.
    [[nodiscard]] std::optional<QString> model() const;
    /// What is wrong, in a few words; empty when nothing is, or nobody listens.
    [[nodiscard]] QString complaint() const;

private:
    QUrl server_;
    QString wantedModel_;
    BoundedAnswer answer_;
    std::optional<std::vector<QString>> models_;
    HttpFetch fetch_;
};

/// A model that can be asked.
struct ModelPlace {
    QUrl server;
    QString model;
    friend bool operator==(const ModelPlace&, const ModelPlace&) = default;
};

/// Where to look for a model, and for which.
struct ServerSearch {
    /// Addresses of this machine, in the order in which they are preferred.
    std::vector<QUrl> servers;
    /// Whether the user has named them, so that there is a server for certain, running or not.
    bool areNamed = false;
    /// The only model that will do; empty when any will.
    QString wantedModel;
    /// Where the last search has found one: asked first, and alone as long as it has one.
    std::optional<QUrl> lastServer;
    InstallationFolders folders;
    quint64 memory = 0;
    /// For all answers together. Who has not answered by then is taken for a server that is not ready.
    std::chrono::milliseconds patience = std::chrono::seconds(1);
};

struct ServerFindings {
    LanguageModelAvailability availability = LanguageModelAvailability::otherReason;
    /// When available.
    std::optional<ModelPlace> place;
    /// What is wrong with a server that the user has named, or that is another user's, for the log; empty
    /// when nothing is.
    QString complaint;
};

/// Asks the servers for their models, those of other users excepted. Waits, at most for the search's
/// patience; when it is told to stop the findings mean nothing.
///
/// Thread: any but the main thread.
[[nodiscard]] ServerFindings findModel(ServerSearch search, const std::stop_token& stop);

} // namespace corvandi
