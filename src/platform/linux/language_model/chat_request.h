#pragma once

#include <QByteArray>
#include <QString>

namespace corvandi {

/// The body of a request for one answer, streamed as it is made, with the server's own generation
/// options. The conversation is the instructions and the prompt, each as it stands, and nothing else.
[[nodiscard]] QByteArray chatRequest(const QString& model, const QString& instructions,
                                     const QString& prompt);

} // namespace corvandi
