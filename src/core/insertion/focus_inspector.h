#pragma once

#include "ports/focused_element.h"

namespace corvandi {

/// What kind of element has the keyboard focus: one that accepts text, a password field, or something
/// that can't be recognised as either.
enum class FocusTarget { editable, secure, unknown };

/// Classifies the focused element. Keeps no state. The rules are written in one platform's names for
/// roles ("AXTextField"); adapters of other platforms translate theirs into these.
///
/// Thread: main thread only.
class FocusInspector {
public:
    explicit FocusInspector(FocusedElementReader& reader)
        : reader_(reader)
    {
    }

    [[nodiscard]] FocusTarget currentTarget() const;

private:
    FocusedElementReader& reader_;
};

} // namespace corvandi
