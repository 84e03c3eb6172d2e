#pragma once

#include "platform/linux/language_model/http_exchange.h"
#include "platform/linux/language_model/model_list.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace corvandi {

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

    /// `answered` runs once, later; it must not destroy the inquiry.
    ServerInquiry(QNetworkAccessManager& network, const QUrl& server, QString wantedModel,
                  std::function<void()> answered);

    [[nodiscard]] const QUrl& server() const { return server_; }
    [[nodiscard]] Verdict verdict() const;
    /// The model, when there is one.
    [[nodiscard]] std::optional<QString> model() const;
    /// What is wrong, in a few words; empty when nothing is, or nobody listens.
    [[nodiscard]] QString complaint() const;

private:
    [[nodiscard]] bool take(const QByteArray& bytes);

    QUrl server_;
    QString wantedModel_;
    QByteArray answer_;
    std::optional<std::vector<QString>> models_;
    HttpExchange exchange_;
};

} // namespace corvandi
