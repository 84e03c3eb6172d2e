#include "support/event_loop.h"
#include "system/accessibility/focus_fixture.h"

namespace corvandi::testing {
namespace {

const std::vector<ExpectedField> qtFields{
    {"line", FocusTarget::editable, "AXTextField"},
    {"password", FocusTarget::secure, "AXTextField"},
    {"area", FocusTarget::editable, "AXTextArea"},
    {"editable-box", FocusTarget::editable, "AXComboBox"},
    {"list-box", FocusTarget::unknown, "AXPopUpButton"},
    {"number", FocusTarget::editable, "AXTextField"},
    {"read-only-line", FocusTarget::unknown, "AXStaticText"},
    {"read-only-area", FocusTarget::unknown, "AXStaticText"},
    {"label", FocusTarget::unknown, "AXStaticText"},
    {"check", FocusTarget::unknown, "AXCheckBox"},
    {"button", FocusTarget::unknown, "AXButton"},
    {"list", FocusTarget::unknown, "AXList"},
};

const std::vector<ExpectedField> gtkFields{
    {"line", FocusTarget::editable, "AXTextField"},
    {"password", FocusTarget::secure, "AXTextField"},
    {"area", FocusTarget::editable, "AXTextArea"},
    {"search", FocusTarget::editable, "AXTextField"},
    {"editable-box", FocusTarget::editable, "AXTextField"},
    // Its arrow.
    {"editable-box", FocusTarget::unknown, "AXButton"},
    {"list-box", FocusTarget::unknown, "AXButton"},
    {"number", FocusTarget::editable, "AXTextField"},
    {"read-only-line", FocusTarget::unknown, "AXStaticText"},
    {"read-only-area", FocusTarget::unknown, "AXStaticText"},
    {"label", FocusTarget::unknown, "AXStaticText"},
    {"check", FocusTarget::unknown, "AXCheckBox"},
    {"button", FocusTarget::unknown, "AXButton"},
};

/// The toolkit tells of an entry that hides its characters nothing else than of one that shows them,
/// and gives away what was typed into it.
const ExpectedField hiddenGtk4Entry{"hidden-line", FocusTarget::editable, "AXTextField"};

class FieldTest : public FocusTest {
protected:
    /// Goes through the fields by the tabulator key and checks each one.
    void expectFields(TargetApplication& application, const std::vector<ExpectedField>& fields)
    {
        for (const ExpectedField& field : fields) {
            SCOPED_TRACE(field.name);
            if (&field != &fields.front())
                pressKey(QStringLiteral("Tab"));
            ASSERT_TRUE(application.hasFocusOn(QLatin1String(field.name)));
            expectRecognised(field);
        }
    }

    void expectKnownWithoutBeingAsked(TargetApplication& application)
    {
        pressKey(QStringLiteral("Tab"));
        ASSERT_TRUE(application.hasFocusOn(QStringLiteral("password")));
        EXPECT_TRUE(unasked.becomes(application, FocusTarget::secure));
    }

    UnaskedFocus unasked{log};
};

TEST_F(FieldTest, EachFieldOfAQtWindowIsRecognised)
{
    const auto application = startQtFields(QStringLiteral("qt"));
    expectFields(*application, qtFields);
}

TEST_F(FieldTest, EachFieldOfAGtk3WindowIsRecognised)
{
    const auto application = startGtkFields(QStringLiteral("3.0"), QStringLiteral("gtk3"));
    expectFields(*application, gtkFields);
}

TEST_F(FieldTest, EachFieldOfAGtk4WindowIsRecognised)
{
    const auto application = startGtkFields(QStringLiteral("4.0"), QStringLiteral("gtk4"));
    std::vector<ExpectedField> fields = gtkFields;
    fields.push_back(hiddenGtk4Entry);
    expectFields(*application, fields);
}

TEST_F(FieldTest, TheFocusInAQtWindowIsKnownWithoutBeingAskedFor)
{
    const auto application = startQtFields(QStringLiteral("qt"));
    expectKnownWithoutBeingAsked(*application);
}

TEST_F(FieldTest, TheFocusInAGtk3WindowIsKnownWithoutBeingAskedFor)
{
    const auto application = startGtkFields(QStringLiteral("3.0"), QStringLiteral("gtk3"));
    expectKnownWithoutBeingAsked(*application);
}

TEST_F(FieldTest, TheFocusInAGtk4WindowIsKnownWithoutBeingAskedFor)
{
    const auto application = startGtkFields(QStringLiteral("4.0"), QStringLiteral("gtk4"));
    expectKnownWithoutBeingAsked(*application);
}

TEST_F(FieldTest, AQuestionForAPasswordIsSecure)
{
    const TargetApplication zenity(QStringLiteral("zenity"), {QStringLiteral("--password")});
    ASSERT_TRUE(isActive(zenity));
    EXPECT_TRUE(becomes(FocusTarget::secure));
}

TEST_F(FieldTest, ATerminalThatExposesItsTextIsEditable)
{
    const TargetApplication terminal(QStringLiteral("lxterminal"), {QStringLiteral("--no-remote")});
    ASSERT_TRUE(isActive(terminal));
    expectRecognised({"terminal", FocusTarget::editable, "AXTextArea"});
    EXPECT_FALSE(desktop.focusedElement()->valueSettable) << "it counts by its text alone";
}

TEST_F(FieldTest, AQuestionForALineOfTextIsEditable)
{
    const TargetApplication zenity(QStringLiteral("zenity"), {QStringLiteral("--entry")});
    ASSERT_TRUE(isActive(zenity));
    EXPECT_TRUE(becomes(FocusTarget::editable));
}

} // namespace
} // namespace corvandi::testing
