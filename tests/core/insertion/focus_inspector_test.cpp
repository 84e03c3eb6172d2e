#include "core/insertion/focus_inspector.h"

#include "support/fake_focus.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

FocusTarget classify(const std::optional<FocusedElement>& element)
{
    VirtualQueue queue;
    FakeFocus focus(queue);
    focus.element = element;
    return FocusInspector(focus).currentTarget();
}

FocusedElement element(const char* role, const char* subrole = nullptr)
{
    FocusedElement result = FakeFocus::withRole(QString::fromLatin1(role));
    if (subrole)
        result.subrole = QString::fromLatin1(subrole);
    return result;
}

TEST(FocusInspector, WithoutAFocusedElementTheTargetIsUnknown)
{
    EXPECT_EQ(classify(std::nullopt), FocusTarget::unknown);
}

TEST(FocusInspector, ASecureTextFieldIsSecureWhateverItsRole)
{
    EXPECT_EQ(classify(element("AXTextField", "AXSecureTextField")), FocusTarget::secure);
    EXPECT_EQ(classify(element("AXGroup", "AXSecureTextField")), FocusTarget::secure);
}

TEST(FocusInspector, TextFieldsTextAreasAndComboBoxesAreEditable)
{
    EXPECT_EQ(classify(element("AXTextField")), FocusTarget::editable);
    EXPECT_EQ(classify(element("AXTextArea")), FocusTarget::editable);
    EXPECT_EQ(classify(element("AXComboBox")), FocusTarget::editable);
}

TEST(FocusInspector, NamesAreComparedExactly)
{
    EXPECT_EQ(classify(element("axtextfield")), FocusTarget::unknown);
    EXPECT_EQ(classify(element("AXGroup", "axsecuretextfield")), FocusTarget::unknown);
}

TEST(FocusInspector, TheSecureNameAsARoleDoesNotCount)
{
    EXPECT_EQ(classify(element("AXSecureTextField")), FocusTarget::unknown);
}

TEST(FocusInspector, ASearchFieldIsEditable)
{
    EXPECT_EQ(classify(element("AXGroup", "AXSearchField")), FocusTarget::editable);
}

TEST(FocusInspector, AnyOneTextAttributeMakesAnElementEditable)
{
    FocusedElement byRange = element("AXWebArea");
    byRange.hasSelectedTextRange = true;
    FocusedElement byLine = element("AXWebArea");
    byLine.hasInsertionPointLineNumber = true;
    FocusedElement byCount = element("AXWebArea");
    byCount.hasNumberOfCharacters = true;
    EXPECT_EQ(classify(byRange), FocusTarget::editable);
    EXPECT_EQ(classify(byLine), FocusTarget::editable);
    EXPECT_EQ(classify(byCount), FocusTarget::editable);
}

TEST(FocusInspector, ASettableValueAloneMakesAnElementEditable)
{
    FocusedElement slider = element("AXSlider");
    slider.valueSettable = true;
    EXPECT_EQ(classify(slider), FocusTarget::editable);
}

TEST(FocusInspector, AButtonIsUnknown)
{
    EXPECT_EQ(classify(element("AXButton")), FocusTarget::unknown);
    EXPECT_EQ(classify(FocusedElement{}), FocusTarget::unknown);
}

} // namespace
} // namespace corvandi::testing
