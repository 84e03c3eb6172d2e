#pragma once

#include "ports/focused_element.h"

#include <cstdint>

namespace corvandi {

/// States of an accessible object, by their number in the AT-SPI protocol.
enum class AccessibleState : uint8_t {
    active = 1,
    editable = 7,
    focused = 12,
    multiLine = 17,
    visible = 30,
    managesDescendants = 31,
    readOnly = 43,
};

/// The states that an accessible object has.
struct AccessibleStates {
    uint64_t bits = 0;

    [[nodiscard]] bool has(AccessibleState state) const
    {
        return ((bits >> static_cast<unsigned>(state)) & 1U) != 0;
    }
};

/// Number of that role in the protocol.
constexpr uint32_t comboBoxRole = 11;

/// Whether it is a document to be read. Browsers say of such ones that they have the focus also while an
/// element inside them has it, and while another document has it.
[[nodiscard]] bool isDocumentToRead(uint32_t role, AccessibleStates states);

/// What an application tells about one of its elements. What it does not tell is zero or false.
struct AccessibleTraits {
    /// Number of the role in the AT-SPI protocol.
    uint32_t role = 0;
    AccessibleStates states{};
    /// Interfaces that the object implements.
    bool hasText = false;
    bool hasEditableText = false;
    /// One of its children is an editable text. Only asked for in combo boxes, which in some toolkits have
    /// the focus themselves while the text is a child of theirs.
    bool containsEditableText = false;
    /// Its attributes mark it as a field for search terms.
    bool isSearchField = false;
};

/// The element in the terms of the classification, with all of its rules in one table. The rules of the
/// dictation are written in the role names of another platform ("AXTextField"): here they are translated.
///
/// Text that the person cannot change (a label, a page, a field that is read-only) has no text
/// attributes here, although it may implement the interface for reading text; buttons and other
/// controls never have them, whatever else they claim.
[[nodiscard]] FocusedElement focusedElementOf(const AccessibleTraits& traits);

} // namespace corvandi
