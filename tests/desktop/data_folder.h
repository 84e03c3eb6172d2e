#pragma once

#include "harness/waiting.h"

#include <filesystem>
#include <string>
#include <vector>

namespace corvandi::testing {

/// The program's files in the home of the test's desktop.
namespace data_folder {

[[nodiscard]] std::filesystem::path path();
[[nodiscard]] std::filesystem::path historyFile();
/// The texts of the history file, newest first; none when there is no file.
[[nodiscard]] std::vector<std::string> history();
/// Waits until the history holds exactly these texts; false when `deadline` passes first.
[[nodiscard]] bool waitForHistory(const std::vector<std::string>& expected,
                                  harness::Clock::time_point deadline = harness::Clock::now() +
                                                                        harness::patience);
/// Writes a file of the folder, before the program starts.
void write(const std::string& name, const std::string& content);

} // namespace data_folder

} // namespace corvandi::testing
