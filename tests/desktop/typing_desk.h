#pragma once

#include "core/insertion/text_injector.h"
#include "harness/target_application.h"
#include "session/x11/clipboard/x11_pasteboard.h"
#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_keyboard.h"
#include "support/recording_log.h"
#include "system/process/qt_main_queue.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace corvandi::testing {

using TargetKind = harness::TargetApplication::Kind;

/// The server's bits.
namespace keyboard_control {
/// A key counts only when it has been down for a while.
inline constexpr uint32_t slowKeys = 2;
/// The same key counts only once in a while.
inline constexpr uint32_t bounceKeys = 4;
/// A modifier that was struck holds for the next key.
inline constexpr uint32_t stickyKeys = 8;
inline constexpr uint32_t all = slowKeys | bounceKeys | stickyKeys;
} // namespace keyboard_control

/// The real way of a text, from the injector to an application that knows nothing of this program, on the
/// desktop that this process runs in.
class TypingDesk {
public:
    /// Starts the application that text goes to, instead of the one before, and waits until it gets keys.
    /// Throws HarnessError when it does not come up.
    void open(TargetKind kind);
    [[nodiscard]] const harness::TargetApplication& target() const { return *target_; }
    /// What the application holds, a line break as U+000A.
    [[nodiscard]] QString text() const;

    /// Begins to insert; what is returned tells whether the text was handed over, when that is known.
    [[nodiscard]] std::shared_ptr<std::optional<bool>> begin(const QString& text,
                                                             InsertionMethod method = InsertionMethod::type);
    /// Inserts, with the event loop running; whether the text was handed over.
    [[nodiscard]] bool insert(const QString& text, InsertionMethod method = InsertionMethod::type);
    /// Waits, with the event loop running, until the application holds exactly `expected`; false when it
    /// holds something else and has stopped to change.
    [[nodiscard]] bool waitForText(const QString& expected) const;

    /// The state of the session's keyboard: CapsLock and its like, and the layout's group.
    void setLocks(uint8_t modifiers) const;
    [[nodiscard]] uint8_t locks() const;
    void setGroup(uint8_t group) const;
    /// The helps for people who can't use a keyboard as others do that are on (`keyboard_control`), with
    /// the option that two keys at once switch sticky keys off. False when the server refuses.
    [[nodiscard]] bool setAccessibility(uint32_t controls) const;
    [[nodiscard]] uint32_t accessibility() const;

    [[nodiscard]] TestKeyboard& person() { return person_; }
    [[nodiscard]] X11Keyboard& keyboard() { return keyboard_; }
    [[nodiscard]] X11Pasteboard& pasteboard() { return pasteboard_; }
    [[nodiscard]] MainQueue& queue() { return queue_; }

private:
    /// For the application's record.
    std::optional<QTemporaryDir> folder_;
    RecordingLog log_;
    WatchedChord watched_;
    X11Keyboard keyboard_{log_, watched_, [] { return PasteShortcut::controlV; }};
    QtMainQueue queue_;
    X11Pasteboard pasteboard_{queue_};
    TextInjector injector_{keyboard_, pasteboard_, queue_};
    TestKeyboard person_{TestKeyboard::Kind::hardware};
    std::optional<harness::TargetApplication> target_;
};

} // namespace corvandi::testing
