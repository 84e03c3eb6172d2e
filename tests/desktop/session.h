#pragma once

#include "harness/keyboard.h"
#include "harness/preferences.h"
#include "harness/program.h"
#include "harness/recordings.h"
#include "harness/target_application.h"
#include "harness/virtual_desktop.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvandi::testing {

/// The order in which the two keys of the hotkey come up.
enum class ReleaseOrder { keyFirst, optionFirst };

/// One test's desktop, with the program under test and a folder for files. A test that fails leaves a
/// screenshot, and the program's log in its output.
class Session {
public:
    using Options = std::vector<std::string>;

    /// Starts a fresh desktop with sound and the given further options. Its user has completed the welcome.
    explicit Session(const Options& options = {});
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
    /// Made when first asked for: tests that take the display away never ask.
    [[nodiscard]] harness::Keyboard& keyboard();

    /// Starts the program under test, behind a command such as {"env", "LC_ALL=C"}, and waits until it is
    /// ready.
    harness::Program& startProgram(const std::vector<std::string>& prefix = {});
    /// Starts it, also a second time, behind a command such as {"env", "-u", "DISPLAY"}.
    [[nodiscard]] harness::Program launch(const std::vector<std::string>& prefix = {});
    /// The one that `startProgram` started.
    [[nodiscard]] harness::Program& program() { return *program_; }
    void stopProgram();

    void pressHotkey();
    harness::Clock::time_point releaseHotkey(ReleaseOrder order = ReleaseOrder::keyFirst);
    /// Holds the hotkey, speaks when the program hears, and releases the hotkey when all is said.
    /// Returns the place in the log at which this began.
    size_t speak(const harness::Recording& recording, ReleaseOrder order = ReleaseOrder::keyFirst);
    /// Speaks and waits; returns what that added to the application's text.
    std::string dictate(const harness::Recording& recording, const harness::TargetApplication& target,
                        ReleaseOrder order = ReleaseOrder::keyFirst);

    /// Keeps a picture of the screen below the build folder.
    void keepScreenshot(const std::string& name) const;

private:
    std::filesystem::path folder_;
    harness::VirtualDesktop desktop_;
    std::optional<harness::Keyboard> keyboard_;
    std::optional<harness::Program> program_;
    int launches_ = 0;
};

} // namespace corvandi::testing
