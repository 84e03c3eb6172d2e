#pragma once

#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_keyboard.h"
#include "session/x11/keys/x11_session.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <QProcess>

#include <gmock/gmock.h>

namespace corvandi::testing {

/// Another process with a text field that has the focus.
class TypingTarget {
public:
    TypingTarget();
    ~TypingTarget();

    /// What the field holds now.
    [[nodiscard]] QString text();
    /// Waits until the field holds `expected`; says what it holds otherwise.
    [[nodiscard]] ::testing::AssertionResult comesToHold(const QString& expected);
    void clear();
    /// Waits until the process has said this line so often since the text was last read or cleared.
    [[nodiscard]] bool says(const QByteArray& line, qsizetype times = 1);

private:
    void readLines();

    QProcess process_;
    QByteArrayList lines_;
};

/// A keyboard adapter, and an application to type into.
class TypingFixture : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_TRUE(setLayout(QStringLiteral("us"))); }

    /// Types as an insertion does: in events of at most 20 UTF-16 units.
    [[nodiscard]] bool type(const QString& text);

    RecordingLog log;
    WatchedChord watched;
    PasteShortcut pasteShortcut = PasteShortcut::controlV;
    X11Keyboard keyboard{log, watched, [this] { return pasteShortcut; }};
    TypingTarget target;
    TestKeyboard person{TestKeyboard::Kind::hardware};
};

/// Posts `text` the way an insertion does.
void postText(KeyEventSource& source, const QString& text);

} // namespace corvandi::testing
