#pragma once

namespace corvandi {

/// How the program presents itself to the desktop: as an ordinary application with windows, or as an
/// agent that is only seen in the tray.
enum class ActivationMode { regular = 0, accessory = 1 };

/// Thread: main thread only.
class ActivationPolicy {
public:
    virtual ~ActivationPolicy() = default;

    virtual void set(ActivationMode mode) = 0;
};

} // namespace corvandi
