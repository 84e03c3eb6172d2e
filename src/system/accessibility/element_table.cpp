#include "system/accessibility/element_table.h"

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

/// How elements of a role take text.
enum class TextEntry {
    /// Never: a control, or text to be read only.
    never,
    /// If it says that it is editable: everything that can be a field or a document.
    whenEditable,
    /// If it offers an interface for changing its text: some toolkits forget the state of these.
    whenChangeable,
    /// Always, but what it shows is not a value to be set.
    terminal,
    /// A password, which is refused whether it can be changed or not.
    password,
};

struct RoleRule {
    uint32_t role;
    /// The name when it does not take text, or when the row below does not name another.
    const char* name;
    /// The name when it takes text of one line; nothing: the same in both cases.
    const char* fieldName;
    TextEntry entry;
};

constexpr const char* textField = "AXTextField";

constexpr uint32_t documentFrameRole = 82;
constexpr uint32_t webDocumentRole = 95;

/// Roles by their number in the protocol.
constexpr std::array roleRules{
    // Fields.
    RoleRule{40, textField, nullptr, TextEntry::password},            // password text
    RoleRule{61, "AXStaticText", textField, TextEntry::whenEditable}, // text
    RoleRule{79, "AXStaticText", textField, TextEntry::whenEditable}, // entry
    RoleRule{76, "AXStaticText", textField, TextEntry::whenEditable}, // autocomplete
    RoleRule{77, "AXStaticText", textField, TextEntry::whenEditable}, // editbar
    RoleRule{comboBoxRole, "AXPopUpButton", "AXComboBox", TextEntry::whenEditable},
    RoleRule{52, "AXIncrementor", textField, TextEntry::whenChangeable},  // spin button
    RoleRule{12, "AXDateTimeArea", textField, TextEntry::whenChangeable}, // date editor
    RoleRule{60, "AXTextArea", nullptr, TextEntry::terminal},             // terminal

    // Documents and their parts.
    RoleRule{73, "AXGroup", "AXTextArea", TextEntry::whenEditable},   // paragraph
    RoleRule{85, "AXGroup", "AXTextArea", TextEntry::whenEditable},   // section
    RoleRule{83, "AXHeading", "AXTextArea", TextEntry::whenEditable}, // heading
    RoleRule{documentFrameRole, "AXGroup", "AXTextArea", TextEntry::whenEditable},
    RoleRule{92, "AXTable", nullptr, TextEntry::whenEditable},      // spreadsheet
    RoleRule{93, "AXGroup", "AXTextArea", TextEntry::whenEditable}, // presentation
    RoleRule{94, "AXGroup", "AXTextArea", TextEntry::whenEditable}, // text document
    RoleRule{webDocumentRole, "AXWebArea", nullptr, TextEntry::whenEditable},
    RoleRule{96, "AXGroup", "AXTextArea", TextEntry::whenEditable}, // message
    RoleRule{56, "AXCell", nullptr, TextEntry::whenEditable},       // table cell

    // Controls.
    RoleRule{43, "AXButton", nullptr, TextEntry::never},      // push button
    RoleRule{129, "AXMenuButton", nullptr, TextEntry::never}, // push button with a menu
    RoleRule{62, "AXButton", nullptr, TextEntry::never},      // toggle button
    RoleRule{7, "AXCheckBox", nullptr, TextEntry::never},     // check box
    RoleRule{44, "AXRadioButton", nullptr, TextEntry::never}, // radio button
    RoleRule{88, "AXLink", nullptr, TextEntry::never},        // link
    RoleRule{33, "AXMenu", nullptr, TextEntry::never},        // menu
    RoleRule{34, "AXMenuBar", nullptr, TextEntry::never},     // menu bar
    RoleRule{35, "AXMenuItem", nullptr, TextEntry::never},    // menu item
    RoleRule{8, "AXMenuItem", nullptr, TextEntry::never},     // check menu item
    RoleRule{45, "AXMenuItem", nullptr, TextEntry::never},    // radio menu item
    RoleRule{37, "AXRadioButton", nullptr, TextEntry::never}, // page tab
    RoleRule{51, "AXSlider", nullptr, TextEntry::never},      // slider
    RoleRule{48, "AXScrollBar", nullptr, TextEntry::never},   // scroll bar
    RoleRule{27, "AXImage", nullptr, TextEntry::never},       // image
    RoleRule{26, "AXImage", nullptr, TextEntry::never},       // icon

    // Text to be read.
    RoleRule{29, "AXStaticText", nullptr, TextEntry::never},  // label
    RoleRule{116, "AXStaticText", nullptr, TextEntry::never}, // static
    RoleRule{81, "AXStaticText", nullptr, TextEntry::never},  // caption
    RoleRule{64, "AXHelpTag", nullptr, TextEntry::never},     // tool tip

    // Containers.
    RoleRule{31, "AXList", nullptr, TextEntry::never},    // list
    RoleRule{98, "AXList", nullptr, TextEntry::never},    // list box
    RoleRule{55, "AXTable", nullptr, TextEntry::never},   // table
    RoleRule{65, "AXOutline", nullptr, TextEntry::never}, // tree
    RoleRule{66, "AXOutline", nullptr, TextEntry::never}, // tree table
    RoleRule{23, "AXWindow", nullptr, TextEntry::never},  // frame
    RoleRule{69, "AXWindow", nullptr, TextEntry::never},  // window
    RoleRule{16, "AXWindow", nullptr, TextEntry::never},  // dialog
};

/// For every other role: a group of something, unless it says that it is editable.
constexpr RoleRule otherRole{0, "AXGroup", textField, TextEntry::whenEditable};

const RoleRule& ruleFor(uint32_t role)
{
    const auto* const rule = std::ranges::find(roleRules, role, &RoleRule::role);
    return rule == roleRules.end() ? otherRole : *rule;
}

bool takesText(TextEntry entry, const AccessibleTraits& traits)
{
    const bool readOnly = traits.states.has(AccessibleState::readOnly);
    const bool editable =
        (traits.states.has(AccessibleState::editable) || traits.containsEditableText) && !readOnly;
    switch (entry) {
    case TextEntry::never:
        return false;
    case TextEntry::whenEditable:
    case TextEntry::password:
        return editable;
    case TextEntry::whenChangeable:
        return editable || (traits.hasEditableText && !readOnly);
    case TextEntry::terminal:
        return true;
    }
    return false;
}

QLatin1String nameOf(const RoleRule& rule, bool accepts, const AccessibleTraits& traits)
{
    if (!accepts || !rule.fieldName)
        return QLatin1String(rule.name);
    if (rule.fieldName == textField && traits.states.has(AccessibleState::multiLine))
        return QLatin1String("AXTextArea");
    return QLatin1String(rule.fieldName);
}

std::optional<QString> subroleOf(const RoleRule& rule, bool accepts, const AccessibleTraits& traits)
{
    if (rule.entry == TextEntry::password)
        return QStringLiteral("AXSecureTextField");
    if (accepts && traits.isSearchField)
        return QStringLiteral("AXSearchField");
    return std::nullopt;
}

} // namespace

bool isDocumentToRead(uint32_t role, AccessibleStates states)
{
    return (role == documentFrameRole || role == webDocumentRole) && !states.has(AccessibleState::editable);
}

FocusedElement focusedElementOf(const AccessibleTraits& traits)
{
    const RoleRule& rule = ruleFor(traits.role);
    const bool accepts = takesText(rule.entry, traits);
    const bool textReadable = accepts && (traits.hasText || traits.containsEditableText);
    const bool isTerminal = rule.entry == TextEntry::terminal;
    return {
        .role = nameOf(rule, accepts, traits),
        .subrole = subroleOf(rule, accepts, traits),
        .valueSettable = accepts && !isTerminal,
        .hasSelectedTextRange = textReadable || isTerminal,
        .hasInsertionPointLineNumber = textReadable || isTerminal,
        .hasNumberOfCharacters = textReadable || isTerminal,
    };
}

} // namespace corvandi
