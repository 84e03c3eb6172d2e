#pragma once

#include "session.h"

#include "harness/accessible.h"
#include "harness/mouse.h"
#include "harness/windows.h"

#include <optional>
#include <string>
#include <vector>

namespace corvandi::testing {

/// The program's windows in a test's session, seen by way of the accessibility bus and used by real keys
/// and clicks.
class ShellSession : public Session {
public:
    using Sought = harness::Accessible::Sought;

    static constexpr const char* settingsTitle = "Corvandi Settings";
    static constexpr const char* turnOnQuestion = "Turn on the desktop's accessibility support?";
    static constexpr const char* welcomeTitle = "Welcome to Corvandi";

    explicit ShellSession(const Options& options = {});

    /// As a new user: there are no preferences.
    void forgetPreferences() const;
    /// The line with that key in the preferences, such as "saveHistory=false"; empty if there is none.
    [[nodiscard]] std::string preference(const std::string& key) const;
    /// Waits until the preferences have this line.
    [[nodiscard]] bool waitForPreference(const std::string& line) const;

    /// Launches the program once more, which ends at once.
    void launchAgain();
    /// Launches the program once more and waits for its settings.
    harness::Accessible openSettings();
    /// Closes a window as its close button does.
    void closeWindow(const std::string& title) const;
    /// Brings a window to the front and gives it the keyboard.
    void raise(const std::string& title) const;
    [[nodiscard]] const harness::Windows& windows() const { return windows_; }

    /// The running program's elements.
    [[nodiscard]] harness::Accessible elements();
    /// Waits for an element of the window with the keyboard and clicks into the middle of it.
    void click(const Sought& sought);
    void click(const harness::Accessible& element);
    /// Clicks on a page in the settings' sidebar and waits for it.
    void choosePage(const std::string& page);
    /// What has the keyboard in a window of the program. Of a list and its current row, that is the list.
    [[nodiscard]] static std::optional<harness::Accessible> focusedIn(const harness::Accessible& window);
    /// Strikes Tab and returns what has the keyboard then.
    harness::Accessible tab(const harness::Accessible& window);
    /// Strikes Tab until the sought element has the keyboard.
    void tabTo(const harness::Accessible& window, const Sought& sought);
    /// Clicks into an empty text field and types.
    void fill(const Sought& field, const std::string& text);

private:
    harness::Mouse mouse_;
    harness::Windows windows_;
    std::shared_ptr<harness::BusConnection> bus_;
};

} // namespace corvandi::testing
