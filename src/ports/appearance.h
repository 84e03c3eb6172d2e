#pragma once

#include "base/main_queue.h"

#include <functional>
#include <memory>

namespace corvandi {

/// What the desktop wants its applications to look like.
enum class ColorScheme { noPreference, dark, light };

/// The desktop's wish for dark or light windows.
///
/// Thread: main thread only.
class Appearance {
public:
    virtual ~Appearance() = default;

    /// As far as it is known now; no preference until the desktop has said something, and when it never
    /// does.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;
    /// Calls back after every change, never inside this call, until the registration is destroyed. The
    /// registration may outlive the appearance.
    [[nodiscard]] virtual std::unique_ptr<Registration> onChange(std::function<void()> callback) = 0;
};

} // namespace corvandi
