#pragma once

#include "platform/language_model.h"
#include "platform/linux/language_model/server_search.h"

#include <QString>

#include <stop_token>

namespace corvandi {

/// Asks the model one question and waits for all of its answer, however long that takes. When it is told
/// to stop it closes the connection, upon which servers stop their model, and the answer means nothing.
///
/// Thread: any but the main thread.
[[nodiscard]] LanguageModelAnswer askModel(const ModelPlace& place, const QString& instructions,
                                           const QString& prompt, const std::stop_token& stop);

} // namespace corvandi
