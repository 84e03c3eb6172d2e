#pragma once

#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_session.h"
#include "typing_desk.h"
#include "typing_text.h"

#include <gmock/gmock.h>

#include <string>

namespace corvandi::testing {

/// Each test begins with an American layout and a keyboard without locks, and leaves it so.
class TypingTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        desk.setLocks(x11_mask::none);
        desk.setGroup(0);
        EXPECT_TRUE(desk.setAccessibility(0));
        EXPECT_TRUE(setLayout(QStringLiteral("us")));
    }

    /// Waits until the application holds `expected`; says what is different otherwise.
    [[nodiscard]] ::testing::AssertionResult holds(const QString& expected) const
    {
        if (desk.waitForText(expected))
            return ::testing::AssertionSuccess();
        const QString held = desk.text();
        qsizetype same = 0;
        while (same < held.size() && same < expected.size() && held[same] == expected[same])
            ++same;
        return ::testing::AssertionFailure()
               << held.size() << " units instead of " << expected.size() << "; after " << same
               << " equal ones \"" << held.mid(same, 40).toStdString() << "\" instead of \""
               << expected.mid(same, 40).toStdString() << "\"";
    }

    TypingDesk desk;
};

/// For names of parametrised tests.
[[nodiscard]] inline std::string nameOf(TargetKind kind)
{
    switch (kind) {
    case TargetKind::terminal:
        return "Terminal";
    case TargetKind::qtField:
        return "QtField";
    case TargetKind::gtkField:
        return "GtkField";
    case TargetKind::qtForm:
        return "QtForm";
    }
    return {};
}

/// For every kind of application.
class TypingEverywhereTest : public TypingTest, public ::testing::WithParamInterface<TargetKind> {
protected:
    void SetUp() override { desk.open(GetParam()); }
};

} // namespace corvandi::testing
