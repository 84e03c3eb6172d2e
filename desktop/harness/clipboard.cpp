#include "harness/clipboard.h"

#include "harness/child_process.h"

#include <sstream>
#include <thread>

namespace corvandi::harness::clipboard {
namespace {

/// xclip fails when there is no owner, or none of the form.
std::optional<std::string> read(const std::string& form)
{
    try {
        return outputOf({"xclip", "-selection", "clipboard", "-out", "-target", form});
    } catch (const HarnessError&) {
        return std::nullopt;
    }
}

} // namespace

std::optional<std::string> text()
{
    return read("UTF8_STRING");
}

bool hasForm(const std::string& form)
{
    std::istringstream forms(read("TARGETS").value_or(std::string()));
    for (std::string line; std::getline(forms, line);) {
        if (line == form)
            return true;
    }
    return false;
}

std::string contents(const std::string& form)
{
    return read(form).value_or(std::string());
}

void copy(const std::string& text)
{
    // xclip leaves a process behind that owns the clipboard until another program takes it.
    (void)outputOf({"sh", "-c", R"(printf %s "$1" | xclip -selection clipboard -in >/dev/null)", "sh", text});
}

bool waitForText(const std::string& expected, Clock::time_point deadline)
{
    constexpr std::chrono::milliseconds interval{50};
    while (text() != expected) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(interval);
    }
    return true;
}

} // namespace corvandi::harness::clipboard
