#pragma once

namespace corvandi {

/// Something that was registered somewhere. Destroying it takes the registration back; its callback
/// never runs after that.
class Registration {
public:
    virtual ~Registration() = default;
};

} // namespace corvandi
