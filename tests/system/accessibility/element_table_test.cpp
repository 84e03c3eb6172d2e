#include "system/accessibility/element_table.h"

#include "core/insertion/focus_inspector.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

constexpr uint32_t comboBox = 11;
constexpr uint32_t label = 29;
constexpr uint32_t passwordText = 40;
constexpr uint32_t pushButton = 43;
constexpr uint32_t spinButton = 52;
constexpr uint32_t tableCell = 56;
constexpr uint32_t terminal = 60;
constexpr uint32_t text = 61;
constexpr uint32_t unknownRole = 67;
constexpr uint32_t paragraph = 73;
constexpr uint32_t entry = 79;
constexpr uint32_t section = 85;
constexpr uint32_t webDocument = 95;
constexpr uint32_t notInventedYet = 9999;

AccessibleStates states(std::initializer_list<AccessibleState> list)
{
    AccessibleStates result;
    for (const AccessibleState state : list)
        result.bits |= uint64_t{1} << static_cast<unsigned>(state);
    return result;
}

AccessibleTraits editableText(uint32_t role, std::initializer_list<AccessibleState> further = {})
{
    AccessibleTraits traits{
        .role = role, .states = states(further), .hasText = true, .hasEditableText = true};
    traits.states.bits |= states({AccessibleState::editable}).bits;
    return traits;
}

AccessibleTraits readableText(uint32_t role)
{
    return {.role = role, .hasText = true};
}

class FixedElement : public FocusedElementReader {
public:
    explicit FixedElement(FocusedElement element)
        : element_(std::move(element))
    {
    }
    [[nodiscard]] std::optional<FocusedElement> focusedElement() override { return element_; }

private:
    FocusedElement element_;
};

FocusTarget targetOf(const AccessibleTraits& traits)
{
    FixedElement client(focusedElementOf(traits));
    return FocusInspector(client).currentTarget();
}

bool hasTextAttributes(const FocusedElement& element)
{
    return element.hasSelectedTextRange || element.hasInsertionPointLineNumber ||
           element.hasNumberOfCharacters;
}

TEST(ElementTable, AFieldForOneLineIsATextField)
{
    for (const uint32_t role : {text, entry}) {
        const FocusedElement element = focusedElementOf(editableText(role));
        EXPECT_EQ(element.role, QStringLiteral("AXTextField"));
        EXPECT_EQ(element.subrole, std::nullopt);
        EXPECT_TRUE(element.valueSettable);
        EXPECT_TRUE(element.hasSelectedTextRange);
        EXPECT_TRUE(element.hasInsertionPointLineNumber);
        EXPECT_TRUE(element.hasNumberOfCharacters);
    }
}

TEST(ElementTable, AFieldForSeveralLinesIsATextArea)
{
    const AccessibleTraits traits = editableText(text, {AccessibleState::multiLine});
    EXPECT_EQ(focusedElementOf(traits).role, QStringLiteral("AXTextArea"));
    EXPECT_EQ(targetOf(traits), FocusTarget::editable);
}

TEST(ElementTable, APasswordIsSecureWhetherItCanBeChangedOrNot)
{
    EXPECT_EQ(focusedElementOf(editableText(passwordText)).role, QStringLiteral("AXTextField"));
    EXPECT_EQ(targetOf(editableText(passwordText)), FocusTarget::secure);
    EXPECT_EQ(targetOf(readableText(passwordText)), FocusTarget::secure);
    EXPECT_EQ(targetOf({.role = passwordText, .isSearchField = true}), FocusTarget::secure);
}

TEST(ElementTable, AComboBoxTakesTextOnlyIfItIsEditable)
{
    EXPECT_EQ(focusedElementOf(editableText(comboBox)).role, QStringLiteral("AXComboBox"));
    EXPECT_EQ(focusedElementOf(readableText(comboBox)).role, QStringLiteral("AXPopUpButton"));
    EXPECT_EQ(targetOf(readableText(comboBox)), FocusTarget::unknown);
}

TEST(ElementTable, AComboBoxWhoseTextIsAChildOfItsTakesText)
{
    const FocusedElement element = focusedElementOf({.role = comboBox, .containsEditableText = true});
    EXPECT_EQ(element.role, QStringLiteral("AXComboBox"));
    EXPECT_TRUE(element.valueSettable);
    EXPECT_TRUE(hasTextAttributes(element));
}

TEST(ElementTable, AFieldForSearchTermsIsMarked)
{
    AccessibleTraits traits = editableText(entry);
    traits.isSearchField = true;
    EXPECT_EQ(focusedElementOf(traits).subrole, QStringLiteral("AXSearchField"));
    EXPECT_EQ(targetOf({.role = entry, .hasText = true, .isSearchField = true}), FocusTarget::unknown)
        << "one that cannot be changed takes no text";
}

TEST(ElementTable, TextThatCanOnlyBeReadIsNoField)
{
    for (const uint32_t role : {text, entry, label, paragraph, section, webDocument, unknownRole}) {
        const FocusedElement element = focusedElementOf(readableText(role));
        EXPECT_FALSE(element.valueSettable) << role;
        EXPECT_FALSE(hasTextAttributes(element)) << role;
        EXPECT_EQ(targetOf(readableText(role)), FocusTarget::unknown) << role;
    }
}

TEST(ElementTable, ReadOnlyOverridesEditable)
{
    EXPECT_EQ(targetOf(editableText(text, {AccessibleState::readOnly})), FocusTarget::unknown);
    EXPECT_EQ(targetOf(editableText(spinButton, {AccessibleState::readOnly})), FocusTarget::unknown);
}

TEST(ElementTable, AButtonTakesNoTextWhateverItClaims)
{
    const FocusedElement element = focusedElementOf(editableText(pushButton));
    EXPECT_EQ(element.role, QStringLiteral("AXButton"));
    EXPECT_FALSE(element.valueSettable);
    EXPECT_FALSE(hasTextAttributes(element));
}

TEST(ElementTable, AnEditablePartOfADocumentTakesText)
{
    for (const uint32_t role : {paragraph, section, webDocument, tableCell})
        EXPECT_EQ(targetOf(editableText(role)), FocusTarget::editable) << role;
}

TEST(ElementTable, ADocumentIsToBeReadUnlessItIsEditable)
{
    EXPECT_TRUE(isDocumentToRead(webDocument, states({AccessibleState::focused})));
    EXPECT_FALSE(isDocumentToRead(webDocument, states({AccessibleState::editable})));
    EXPECT_FALSE(isDocumentToRead(entry, {}));
}

TEST(ElementTable, ATerminalTakesTextAlthoughItsValueCannotBeSet)
{
    const FocusedElement element = focusedElementOf(readableText(terminal));
    EXPECT_TRUE(hasTextAttributes(element));
    EXPECT_FALSE(element.valueSettable);
    EXPECT_EQ(targetOf(readableText(terminal)), FocusTarget::editable);
}

TEST(ElementTable, ANumberFieldTakesTextIfItsTextCanBeChanged)
{
    EXPECT_EQ(targetOf({.role = spinButton, .hasText = true, .hasEditableText = true}),
              FocusTarget::editable);
    EXPECT_EQ(targetOf(readableText(spinButton)), FocusTarget::unknown);
}

TEST(ElementTable, AnUnknownRoleCountsByItsStates)
{
    EXPECT_EQ(targetOf(editableText(notInventedYet)), FocusTarget::editable);
    EXPECT_EQ(targetOf(readableText(notInventedYet)), FocusTarget::unknown);
}

TEST(ElementTable, AnEditableElementWithoutATextInterfaceHasASettableValueAndNoTextAttributes)
{
    const FocusedElement element =
        focusedElementOf({.role = tableCell, .states = states({AccessibleState::editable})});
    EXPECT_TRUE(element.valueSettable);
    EXPECT_FALSE(hasTextAttributes(element));
}

} // namespace
} // namespace corvandi::testing
