#include "harness/program.h"

#include <regex>

namespace corvandi::harness {
namespace {

std::optional<std::string> lineIn(const std::string& log, const std::string& part, size_t mark)
{
    const size_t found = log.find(part, mark);
    const size_t end = log.find('\n', found);
    if (found == std::string::npos || end == std::string::npos)
        return std::nullopt;
    const size_t before = log.rfind('\n', found);
    const size_t start = before == std::string::npos ? 0 : before + 1;
    return log.substr(start, end - start);
}

} // namespace

Program::Program(const std::vector<std::string>& command, const std::filesystem::path& log)
    : log_(log)
    , process_(command, {.output = log})
{
}

std::string Program::waitForLine(const std::string& part, size_t mark, std::chrono::seconds limit) const
{
    const auto isThere = [&](const std::string& log) { return lineIn(log, part, mark).has_value(); };
    if (!log_.waitUntil(isThere, Clock::now() + limit))
        throw HarnessError("no line with \"" + part + "\" came; the log:\n" + log());
    return lineIn(log(), part, mark).value_or(std::string());
}

void Program::waitForLines(const std::string& part, size_t count, size_t mark) const
{
    for (; count > 0; --count) {
        waitForLine(part, mark);
        mark = log().find(part, mark) + part.size();
    }
}

std::optional<std::string> Program::lineWith(const std::string& part, size_t mark) const
{
    return lineIn(log(), part, mark);
}

std::optional<std::chrono::milliseconds> millisecondsIn(const std::string& line)
{
    static const std::regex pattern("([0-9]+) ?ms");
    std::smatch match;
    if (!std::regex_search(line, match, pattern))
        return std::nullopt;
    return std::chrono::milliseconds(std::stoi(match[1]));
}

} // namespace corvandi::harness
