#include "harness/preferences.h"

#include "harness/waiting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace corvandi::harness {

void writePreferences(const std::vector<std::string>& lines)
{
    const char* home = std::getenv("XDG_CONFIG_HOME");
    if (home == nullptr)
        throw HarnessError("there is no desktop with a home of its own");
    const std::filesystem::path folder = std::filesystem::path(home) / "Corvandi";
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / "Corvandi.conf", std::ios::binary);
    file << "[General]\ndidCompleteWelcome=true\n";
    for (const std::string& line : lines)
        file << line << '\n';
}

} // namespace corvandi::harness
