#pragma once

#include "ports/language_model.h"
#include "system/language_model/server_search.h"

#include <QByteArray>
#include <QString>

#include <stop_token>

namespace corvandi {

/// The body of a request for one answer, streamed as it is made, with the server's own generation
/// options. The conversation is the instructions and the prompt, each as it stands, and nothing else.
[[nodiscard]] QByteArray chatRequest(const QString& model, const QString& instructions,
                                     const QString& prompt);

/// Asks the model one question, unless its server is another user's by now, and waits for all of its answer,
/// however long that takes. When it is told to stop it closes the connection, upon which servers stop their
/// model, and the answer means nothing.
///
/// Thread: any but the main thread.
[[nodiscard]] LanguageModelAnswer askModel(const ModelPlace& place, const QString& instructions,
                                           const QString& prompt, const std::stop_token& stop);

/// The body of a request for as little of an answer as there can be, to a question that says nothing.
[[nodiscard]] QByteArray warmUpRequest(const QString& model);

/// Has the server load the model, by asking it something, and waits until it has answered, for five minutes
/// at most. Returns whether it has.
///
/// Thread: any but the main thread.
[[nodiscard]] bool warmUpModel(const ModelPlace& place, const std::stop_token& stop);

} // namespace corvandi
