#include "data_folder.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;

void writeFile(const std::filesystem::path& file, const std::string& content)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

} // namespace

namespace data_folder {

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
    writeFile(path() / name, content);
}

} // namespace data_folder

void writePreferences(const std::vector<std::string>& lines)
{
    std::string content = "[General]\n";
    for (const std::string& line : lines)
        content += line + '\n';
    writeFile(std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "Corvandi" / "Corvandi.conf", content);
}

} // namespace corvandi::testing
