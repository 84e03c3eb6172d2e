#pragma once

namespace corvandi {

/// What an application takes for "paste".
enum class PasteShortcut {
    controlV,
    /// Terminals, where Control+V goes to the program that runs in them.
    controlShiftV,
    /// Terminals that know none, or only one that does not paste the clipboard.
    none,
};

} // namespace corvandi
