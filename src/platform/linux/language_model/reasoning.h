#pragma once

#include <QString>

namespace corvandi {

/// The text of an answer without the reasoning that some models put before it: "<think>…</think>",
/// several of them, or one whose opening tag the server has swallowed. Reasoning that never ends leaves
/// nothing.
[[nodiscard]] QString withoutReasoning(const QString& answer);

} // namespace corvandi
