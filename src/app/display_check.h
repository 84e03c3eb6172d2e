#pragma once

namespace corvandi {

/// Whether the X display that the environment names can be opened. Qt ends the process without a word
/// of ours when it can't, so this is asked before.
[[nodiscard]] bool isDisplayReachable();

} // namespace corvandi
