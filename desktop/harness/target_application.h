#pragma once

#include "harness/child_process.h"
#include "harness/growing_file.h"
#include "harness/keyboard.h"
#include "harness/windows.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace corvandi::harness {

/// An application that text is dictated into. It knows nothing of the program under test; it records
/// what it receives, with times.
class TargetApplication {
public:
    enum class Kind {
        terminal,
        qtField,
        gtkField,
        /// A text field, a password field and a button; Tab leads from one to the next.
        qtForm,
    };

    struct Change {
        Clock::time_point at;
        /// The whole text after the change.
        std::string text;
    };
    struct KeyPress {
        unsigned long symbol = 0;
        bool withAlt = false;
    };

    /// Starts it and waits until it has the keyboard. `folder` gets its record.
    /// Throws HarnessError when it does not come up.
    TargetApplication(Kind kind, const std::filesystem::path& folder);

    [[nodiscard]] pid_t processId() const { return process_.id(); }
    /// Gives it the keyboard again, after another target had it.
    void activate() const;
    [[nodiscard]] std::string text() const;
    [[nodiscard]] std::vector<Change> changes() const;
    /// The key presses that the application was told of. A terminal is told bytes instead; of those,
    /// only the function key that `settle` uses is listed, all others are text.
    [[nodiscard]] std::vector<KeyPress> keyPresses() const;
    /// Strikes a key that writes nothing and waits until the application has seen it. All keys that
    /// the same keyboard sent before have been handled then; those of others need not, the server is
    /// free to take them later. Throws HarnessError when it does not see it.
    void settle(Keyboard& keyboard) const;
    /// Clicks into the middle of its window, which is the form's password field, and waits until another
    /// element has the focus.
    void clickInTheMiddle() const;
    /// Strikes Tab and waits until another element of the application has the focus.
    void focusNext(Keyboard& keyboard) const;
    [[nodiscard]] bool waitForText(const std::string& expected) const;
    /// Waits until the text is longer than `before` and has stopped to grow; returns what was added.
    /// Throws HarnessError when nothing comes.
    [[nodiscard]] std::string waitForAddition(const std::string& before) const;

private:
    void expectFocusToMove(const std::function<void()>& action) const;

    GrowingFile record_;
    std::string title_;
    ChildProcess process_;
};

} // namespace corvandi::harness
