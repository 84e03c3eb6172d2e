#pragma once

#include "platform/language_model.h"
#include "platform/linux/language_model/known_servers.h"

#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>
#include <vector>

namespace corvandi {

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
    /// What is wrong with a server that the user has named, for the log; empty when nothing is.
    QString complaint;
};

/// Asks the servers for their models. Waits, at most for the search's patience; when it is told to stop
/// the findings mean nothing.
///
/// Thread: any but the main thread.
[[nodiscard]] ServerFindings findModel(const ServerSearch& search, const std::stop_token& stop);

} // namespace corvandi
