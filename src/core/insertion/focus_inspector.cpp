#include "core/insertion/focus_inspector.h"

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

/// Roles that count as editable without further tests.
constexpr std::array editableRoles{
    QLatin1String("AXTextField"),
    QLatin1String("AXTextArea"),
    QLatin1String("AXComboBox"),
};

bool hasTextAttributes(const FocusedElement& element)
{
    return element.hasSelectedTextRange || element.hasInsertionPointLineNumber ||
           element.hasNumberOfCharacters;
}

} // namespace

FocusTarget FocusInspector::currentTarget() const
{
    const std::optional<FocusedElement> element = reader_.focusedElement();
    if (!element)
        return FocusTarget::unknown;
    // First of all: a password field is a text field as well.
    if (element->subrole == QLatin1String("AXSecureTextField"))
        return FocusTarget::secure;
    if (element->role && std::ranges::find(editableRoles, *element->role) != editableRoles.end())
        return FocusTarget::editable;
    if (element->subrole == QLatin1String("AXSearchField"))
        return FocusTarget::editable;
    return hasTextAttributes(*element) || element->valueSettable ? FocusTarget::editable
                                                                 : FocusTarget::unknown;
}

} // namespace corvandi
