#pragma once

#include "harness/waiting.h"

#include <optional>
#include <string>

namespace corvandi::harness::clipboard {

/// The clipboard's text, as another application gets it; nothing when there is none.
[[nodiscard]] std::optional<std::string> text();
/// Whether its owner offers this form.
[[nodiscard]] bool hasForm(const std::string& form);
/// What its owner gives in this form; empty when it has none.
[[nodiscard]] std::string contents(const std::string& form);
/// Copies `text`, as another application.
void copy(const std::string& text);
/// Waits until the clipboard holds this text; false when `deadline` passes first.
[[nodiscard]] bool waitForText(const std::string& expected,
                               Clock::time_point deadline = Clock::now() + patience);

} // namespace corvandi::harness::clipboard
