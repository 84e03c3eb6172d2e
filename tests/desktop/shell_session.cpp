#include "shell_session.h"

#include "harness/child_process.h"

#include <cstdlib>
#include <fstream>

namespace corvandi::testing {
namespace {

using namespace harness;

std::filesystem::path preferencesFile()
{
    return std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "Corvandi" / "Corvandi.conf";
}

} // namespace

ShellSession::ShellSession(const Options& options)
    : Session(options)
    , bus_(BusConnection::toAccessibility())
{
}

void ShellSession::forgetPreferences() const
{
    std::filesystem::remove_all(preferencesFile().parent_path());
}

std::string ShellSession::preference(const std::string& key) const
{
    std::ifstream file(preferencesFile());
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(key + '='))
            return line;
    }
    return {};
}

bool ShellSession::waitForPreference(const std::string& line) const
{
    return waitUntil([&] { return preference(line.substr(0, line.find('='))) == line; });
}

void ShellSession::launchAgain()
{
    Program second = launch();
    if (second.process().waitUntilEnded() != 0)
        throw HarnessError("a second launch does not end well; its log:\n" + second.log());
}

Accessible ShellSession::openSettings()
{
    launchAgain();
    return elements().waitFor({"frame", settingsTitle});
}

void ShellSession::raise(const std::string& title) const
{
    (void)outputOf({"wmctrl", "-F", "-a", title});
    if (!windows_.waitUntilActive(title))
        throw HarnessError(title + " does not come to the front");
}

void ShellSession::closeWindow(const std::string& title) const
{
    (void)outputOf({"wmctrl", "-F", "-c", title});
    if (!windows_.waitUntilClosed(title))
        throw HarnessError(title + " does not close");
}

Accessible ShellSession::elements()
{
    return Accessible::application(bus_, program().process().id());
}

void ShellSession::click(const Sought& sought)
{
    click(elements().waitFor(sought));
}

void ShellSession::click(const Accessible& element)
{
    // A window that has just come knows only after a moment where it was put.
    if (!waitUntil([&] { return element.window().area() == windows_.activeArea(); }))
        throw HarnessError(windows_.activeTitle() + " has the keyboard, not " + element.window().name());
    mouse_.clickInto(element.area());
}

void ShellSession::choosePage(const std::string& page)
{
    click({"list item", page});
    elements().waitFor({"layered pane", page});
}

std::optional<Accessible> ShellSession::focusedIn(const Accessible& window)
{
    std::optional<Accessible> focused;
    window.walk([&](const Accessible& element) {
        if (!element.is(Accessible::State::focused))
            return;
        if (element.role() == "list item" && element.parent().is(Accessible::State::focusable))
            return;
        focused = element;
    });
    return focused;
}

Accessible ShellSession::tab(const Accessible& window)
{
    const auto before = focusedIn(window);
    keyboard().strike(Key::tab);
    if (!waitUntil([&] { return focusedIn(window) && !(focusedIn(window) == before); }))
        throw HarnessError("Tab leads nowhere in:\n" + window.outline());
    return *focusedIn(window);
}

void ShellSession::tabTo(const Accessible& window, const Sought& sought)
{
    constexpr int moreThanAnyWindowHas = 40;
    const Accessible goal = window.waitFor(sought);
    for (int left = moreThanAnyWindowHas; !(focusedIn(window) == goal); --left) {
        if (left == 0)
            throw HarnessError("Tab does not lead to \"" + sought.name + "\" in:\n" + window.outline());
        (void)tab(window);
    }
}

void ShellSession::fill(const Sought& field, const std::string& text)
{
    const Accessible element = elements().waitFor(field);
    click(element);
    if (!waitUntil([&] { return element.is(Accessible::State::focused); }))
        throw HarnessError("\"" + field.name + "\" does not get the keyboard");
    keyboard().type(text);
    if (!waitUntil([&] { return element.text() == text; }))
        throw HarnessError("\"" + field.name + "\" holds \"" + element.text() + '"');
}

} // namespace corvandi::testing
