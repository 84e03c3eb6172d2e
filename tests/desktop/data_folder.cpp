#include "data_folder.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <thread>

namespace corvandi::testing {
namespace data_folder {

using harness::Clock;

std::filesystem::path path()
{
    return std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "Corvandi";
}

std::filesystem::path historyFile()
{
    return path() / "history.json";
}

std::vector<std::string> history()
{
    std::vector<std::string> texts;
    std::ifstream file(historyFile());
    if (!file)
        return texts;
    for (const nlohmann::json& entry : nlohmann::json::parse(file))
        texts.push_back(entry.at("text").get<std::string>());
    return texts;
}

bool waitForHistory(const std::vector<std::string>& expected, Clock::time_point deadline)
{
    constexpr std::chrono::milliseconds interval{20};
    while (history() != expected) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(interval);
    }
    return true;
}

void write(const std::string& name, const std::string& content)
{
    std::filesystem::create_directories(path());
    std::ofstream(path() / name, std::ios::binary) << content;
}

} // namespace data_folder

} // namespace corvandi::testing
