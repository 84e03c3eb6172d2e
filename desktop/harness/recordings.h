#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace corvandi::harness
{

/// Speech with what is said in it.
struct Recording
{
    std::filesystem::path file;
    std::string reference;
};

namespace recordings
{

/// A man says four words, 2.8 seconds.
[[nodiscard]] Recording goForward();
/// A reader of a novel: five sentences of 3.0 to 7.1 seconds, 24.7 together.
[[nodiscard]] std::vector<Recording> novel();
/// Joins recordings into one file below `folder`, with silence before each but the first.
/// Throws HarnessError when that fails.
[[nodiscard]] Recording joined(const std::vector<Recording>& parts, std::chrono::milliseconds pause,
                               const std::filesystem::path& folder);

} // namespace recordings
} // namespace corvandi::harness
