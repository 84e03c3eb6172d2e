#pragma once

#include "harness/keyboard.h"

namespace corvandi::harness {

/// Another program that holds a key with all modifiers on every keyboard, until it is destroyed.
class KeyGrab {
public:
    /// Throws HarnessError when somebody else holds it already.
    explicit KeyGrab(Key key);

private:
    XDisplay display_;
};

/// Whether a program holds Alt with that key through the core protocol, as window managers do.
[[nodiscard]] bool isHeldWithAlt(Key key);

} // namespace corvandi::harness
