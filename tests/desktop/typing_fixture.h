#pragma once

#include "harness/target_application.h"
#include "insertion/text_injector.h"
#include "platform/linux/event_loop/qt_main_queue.h"
#include "platform/linux/pasteboard/x11_pasteboard.h"
#include "platform/linux/x11/keyboard_state.h"
#include "platform/linux/x11/x11_keyboard.h"
#include "platform/x11/test_keyboard.h"
#include "support/recording_log.h"
#include "typing_text.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace corvandi::testing {

using TargetKind = harness::TargetApplication::Kind;

/// For names of parametrised tests.
[[nodiscard]] std::string nameOf(TargetKind kind);

/// The real way of a text, from the injector to an application that knows nothing of this program. Each test
/// begins with an American layout and no locks, and leaves none.
class TypingTest : public ::testing::Test {
protected:
    ~TypingTest() override;

    /// Starts the application that text goes to.
    void open(TargetKind kind);
    /// Inserts, with the event loop running; whether the text was handed over.
    [[nodiscard]] bool insert(const QString& text, InsertionMethod method = InsertionMethod::type);
    /// Waits, with the event loop running, until the application holds exactly `expected`; says what is
    /// different otherwise.
    [[nodiscard]] ::testing::AssertionResult holds(const QString& expected);
    /// What is typed into the application: it takes line breaks or not.
    [[nodiscard]] QString textFor(TargetKind kind, int count) const;

    void setLocks(uint8_t modifiers);
    [[nodiscard]] uint8_t locks();
    void setGroup(uint8_t group);
    /// A key does nothing but leave its modifier on for the next key.
    void latch(uint8_t modifiers);

    QTemporaryDir folder;
    RecordingLog log;
    WatchedChord watched;
    bool targetIsTerminal = false;
    X11Keyboard keyboard{log, watched, [this] { return targetIsTerminal; }};
    QtMainQueue queue;
    X11Pasteboard pasteboard{queue};
    TextInjector injector{keyboard, pasteboard, queue};
    TestKeyboard person{TestKeyboard::Kind::hardware};
    std::optional<harness::TargetApplication> target;
};

} // namespace corvandi::testing
