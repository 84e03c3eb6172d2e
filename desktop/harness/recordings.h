#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace corvandi::harness {

/// Speech with what is said in it.
struct Recording {
    std::filesystem::path file;
    std::string reference;
};

namespace recordings {

/// Short and clear: four words in 2.8 seconds, five in 3.0, five in 2.4.
[[nodiscard]] Recording goForward();
[[nodiscard]] Recording goSomewhere();
[[nodiscard]] Recording digits();
/// One sentence of the novel below: eighteen words in 6.1 seconds.
[[nodiscard]] Recording moreAmiable();
/// A reader of a novel: five sentences of 3.0 to 7.1 seconds, 24.7 together.
[[nodiscard]] std::vector<Recording> novel();
/// Joins recordings into one file below `folder`, with silence before each but the first.
/// Throws HarnessError when that fails.
[[nodiscard]] Recording joined(const std::vector<Recording>& parts, std::chrono::milliseconds pause,
                               const std::filesystem::path& folder);

} // namespace recordings
} // namespace corvandi::harness
