#pragma once

#include "harness/child_process.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace corvandi::harness {

/// A fresh virtual desktop. As long as it lives, this process and what it starts are inside it: its
/// environment is the process's. One at a time. Nothing of it is left behind, also when this process
/// is killed.
class VirtualDesktop {
public:
    /// Starts it with the options of the `desktop` command, for example {"audio=pulse"}.
    /// Throws HarnessError when it does not come up.
    explicit VirtualDesktop(const std::vector<std::string>& options = {});
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;
    ~VirtualDesktop();

private:
    std::map<std::string, std::string> outerEnvironment_;
    ChildProcess holder_;
};

/// What can be done inside a desktop, fresh or given from outside, that is in the environment.
/// All throw HarnessError when that fails.
namespace desktop {

/// Starts to play a recording into the microphone; the process ends when it has been played.
[[nodiscard]] ChildProcess play(const std::filesystem::path& recording);
/// Plays a recording into the microphone; returns when it has been played.
void playToEnd(const std::filesystem::path& recording);
void screenshot(const std::filesystem::path& file);
void plugMicrophone();
void unplugMicrophone();
/// The services are those of the `desktop` command: bus, wm, compositor, panel, sound, display.
void restart(const std::string& service);
void end(const std::string& service);
[[nodiscard]] std::vector<pid_t> processesOf(const std::string& service);

} // namespace desktop
} // namespace corvandi::harness
