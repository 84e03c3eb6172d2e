#include "harness/target_application.h"

#include <algorithm>
#include <sstream>

namespace corvandi::harness {
namespace {

struct Entry {
    Clock::time_point at;
    std::string kind;
    std::string payload;
};

std::string unescaped(const std::string& escaped)
{
    std::string text;
    for (size_t i = 0; i < escaped.size(); ++i) {
        if (escaped[i] != '\\' || i + 1 == escaped.size())
            text += escaped[i];
        else if (escaped[++i] == 'x')
            text += static_cast<char>(std::stoi(escaped.substr(std::exchange(i, i + 2) + 1, 2), nullptr, 16));
        else
            text += escaped[i];
    }
    return text;
}

/// Lines "<nanoseconds> <kind> <escaped payload>"; a line that is still being written does not count.
std::vector<Entry> entriesOf(const std::string& record)
{
    std::vector<Entry> entries;
    std::istringstream lines(record.substr(0, record.rfind('\n') + 1));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        long long nanoseconds = 0;
        Entry entry;
        fields >> nanoseconds >> entry.kind;
        fields.get();
        std::string payload;
        std::getline(fields, payload);
        entry.at = Clock::time_point(std::chrono::nanoseconds(nanoseconds));
        entry.payload = unescaped(payload);
        entries.push_back(std::move(entry));
    }
    return entries;
}

size_t countOf(const std::string& record, const std::string& kind, const std::string& start = {})
{
    const std::vector<Entry> entries = entriesOf(record);
    return static_cast<size_t>(std::count_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return entry.kind == kind && entry.payload.starts_with(start);
    }));
}

const char* titleOf(TargetApplication::Kind kind)
{
    switch (kind) {
    case TargetApplication::Kind::terminal:
        return "Terminal target";
    case TargetApplication::Kind::qtField:
        return "Qt target";
    case TargetApplication::Kind::gtkField:
        return "GTK target";
    case TargetApplication::Kind::qtForm:
        return "Qt form";
    }
    return "";
}

std::vector<std::string> commandFor(TargetApplication::Kind kind, const std::string& record)
{
    const std::string folder = CORVANDI_TARGETS_FOLDER;
    switch (kind) {
    case TargetApplication::Kind::terminal:
        return {"xterm",
                "-T",
                titleOf(kind),
                "-geometry",
                "100x24+40+120",
                "-fa",
                "DejaVu Sans Mono",
                "-fs",
                "11",
                "-e",
                folder + "/tty_recorder",
                record};
    case TargetApplication::Kind::qtField:
        return {folder + "/qt_text_field", record, titleOf(kind)};
    case TargetApplication::Kind::gtkField:
        return {folder + "/gtk_text_field", record, titleOf(kind)};
    case TargetApplication::Kind::qtForm:
        return {folder + "/qt_form", record, titleOf(kind)};
    }
    return {};
}

} // namespace

TargetApplication::TargetApplication(Kind kind, const std::filesystem::path& folder)
    : record_(folder / (std::string(titleOf(kind)) + ".record"))
    , title_(titleOf(kind))
    , process_(commandFor(kind, record_.path()), {.output = folder / (title_ + ".log")})
{
    const auto isReady = [kind](const std::string& record) {
        return countOf(record, "ready") > 0 && (kind == Kind::terminal || countOf(record, "focus") > 0);
    };
    if (!record_.waitUntil(isReady) || !Windows().waitUntilActive(title_))
        throw HarnessError(title_ + " did not get the keyboard; its record: " + record_.contents());
}

void TargetApplication::activate() const
{
    (void)outputOf({"wmctrl", "-a", title_});
    if (!Windows().waitUntilActive(title_))
        throw HarnessError(title_ + " did not get the keyboard back");
}

std::string TargetApplication::text() const
{
    const std::vector<Change> all = changes();
    return all.empty() ? std::string() : all.back().text;
}

std::vector<TargetApplication::Change> TargetApplication::changes() const
{
    std::vector<Change> all;
    std::string text;
    for (const Entry& entry : entriesOf(record_.contents())) {
        if (entry.kind == "add")
            text += entry.payload;
        else if (entry.kind == "text")
            text = entry.payload;
        else
            continue;
        all.push_back({entry.at, text});
    }
    return all;
}

std::vector<TargetApplication::KeyPress> TargetApplication::keyPresses() const
{
    std::vector<KeyPress> presses;
    for (const Entry& entry : entriesOf(record_.contents())) {
        if (entry.kind != "key")
            continue;
        std::istringstream fields(entry.payload);
        KeyPress press;
        fields >> std::hex >> press.symbol >> press.withAlt;
        presses.push_back(press);
    }
    return presses;
}

void TargetApplication::focusNext(Keyboard& keyboard) const
{
    expectFocusToMove([&] { keyboard.strike(Key::tab); });
}

void TargetApplication::clickInTheMiddle() const
{
    expectFocusToMove([this] {
        (void)outputOf({"sh", "-c",
                        "eval $(xdotool search --name \"^$1\\$\" getwindowgeometry --shell) &&"
                        "xdotool mousemove --window $WINDOW $((WIDTH / 2)) $((HEIGHT / 2)) click 1",
                        "sh", title_});
    });
}

void TargetApplication::expectFocusToMove(const std::function<void()>& action) const
{
    const size_t before = countOf(record_.contents(), "focus");
    action();
    if (!record_.waitUntil([&](const std::string& record) { return countOf(record, "focus") > before; }))
        throw HarnessError(title_ + " did not move the focus; its record: " + record_.contents());
}

void TargetApplication::settle(Keyboard& keyboard) const
{
    std::ostringstream start;
    start << std::hex << static_cast<unsigned long>(Key::f12) << ' ';
    const size_t before = countOf(record_.contents(), "key", start.str());
    keyboard.strike(Key::f12);
    const auto isSeen = [&](const std::string& record) {
        return countOf(record, "key", start.str()) > before;
    };
    if (!record_.waitUntil(isSeen))
        throw HarnessError(title_ + " did not see a key; its record: " + record_.contents());
}

std::string TargetApplication::waitForAddition(const std::string& before) const
{
    if (!record_.waitUntil([&](const std::string&) { return text().size() > before.size(); }))
        throw HarnessError("nothing arrived in " + title_ + "; its record: " + record_.contents());
    // Typed text comes in one go; between two of its characters there is never as much time.
    constexpr std::chrono::milliseconds quiet{300};
    record_.waitUntilQuiet(quiet);
    return text().substr(before.size());
}

bool TargetApplication::waitForText(const std::string& expected) const
{
    return record_.waitUntil([&](const std::string&) { return text() == expected; });
}

} // namespace corvandi::harness
