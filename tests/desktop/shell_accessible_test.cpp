// Everything in the program's windows can be found by those who can't see it, and used without a mouse.

#include "data_folder.h"
#include "shell_session.h"

#include "harness/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace corvandi::testing {
namespace {

using namespace harness;
using State = Accessible::State;
using Match = Accessible::Sought::Match;

const std::vector<std::string> pages{"General", "Vocabulary", "History", "Permissions"};

/// What people work with; the rest is there to be read, or to hold others.
bool isControl(const Accessible& element)
{
    static const std::set<std::string> roles{"push button", "check box", "combo box", "text",
                                             "list",        "list item", "menu item", "toggle button"};
    return roles.contains(element.role());
}

/// What the person hears: combo boxes are called what is chosen, and told apart by a label or a description.
std::string spokenName(const Accessible& element)
{
    if (element.role() != "combo box")
        return element.name();
    const std::string label = element.label();
    return label.empty() ? element.description() : label;
}

void expectAccessible(const Accessible& element)
{
    const std::string role = element.role();
    const std::string name = spokenName(element);
    // Scroll bars are for the mouse; the keys of the focused control move the page as well.
    if (role == "scroll bar")
        return;
    const bool isUsable = isControl(element) || element.is(State::focusable) || !element.actions().empty();
    if (!isUsable)
        return;
    SCOPED_TRACE(role + " \"" + name + '"');
    EXPECT_FALSE(name.empty()) << element.description();
    EXPECT_NE(role, "filler");
    EXPECT_NE(role, "unknown");
    EXPECT_TRUE(element.is(State::visible));
    EXPECT_EQ(element.is(State::enabled), element.is(State::sensitive));
    if (role == "text") {
        EXPECT_TRUE(element.is(State::editable));
    }
    EXPECT_GT(element.area().width, 0);
    EXPECT_GT(element.area().height, 0);
}

void expectAllAccessible(const Accessible& window)
{
    SCOPED_TRACE(window.name());
    EXPECT_FALSE(window.name().empty());
    window.walk(expectAccessible);
}

/// The controls that Tab has to reach: a list is one stop, and so is everything else that is not disabled.
std::vector<Accessible> stopsIn(const Accessible& window)
{
    std::vector<Accessible> stops;
    window.walk([&](const Accessible& element) {
        const std::string role = element.role();
        const bool isStop = element.is(State::enabled) && element.is(State::focusable);
        if (isControl(element) && isStop && role != "list item" && role != "menu item")
            stops.push_back(element);
    });
    return stops;
}

bool contains(const std::vector<Accessible>& elements, const Accessible& element)
{
    return std::find(elements.begin(), elements.end(), element) != elements.end();
}

/// Strikes Tab and returns what has the focus then, which must show it.
Accessible tabVisibly(ShellSession& session, const Accessible& window)
{
    const Picture unfocused;
    const Accessible now = session.tab(window);
    const Area area = now.area();
    EXPECT_TRUE(waitUntil([&] { return Picture().pixels(area) != unfocused.pixels(area); }))
        << now.role() << " \"" << spokenName(now) << "\" looks as without the focus";
    return now;
}

/// Strikes Tab until the focus is back where it was; it must have been everywhere.
void expectTabReachesAll(ShellSession& session, const Accessible& window)
{
    const std::vector<Accessible> stops = stopsIn(window);
    std::vector<Accessible> reached;
    if (stops.size() == 1 && ShellSession::focusedIn(window) == stops.front())
        return;
    for (size_t i = 0; i <= stops.size() + 2; ++i) {
        const Accessible now = tabVisibly(session, window);
        if (contains(reached, now))
            break;
        reached.push_back(now);
    }
    for (const Accessible& stop : stops)
        EXPECT_TRUE(contains(reached, stop)) << stop.role() << " \"" << spokenName(stop) << '"';
}

TEST(EveryPageOfTheSettings, HasNamesAndRolesAndIsReachedByTheKeyboardAlone)
{
    ShellSession session({"audio=none"});
    data_folder::write("vocab.json",
                       R"({"global":[{"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","from":"ten","to":"10"}],)"
                       R"("apps":[]})");
    data_folder::write("history.json", R"([{"id":"6BA7B811-9DAD-11D1-80B4-00C04FD430C8",)"
                                       R"("text":"What was said.","date":800000000}])");
    session.startProgram();
    const Accessible window = session.openSettings();
    ASSERT_TRUE(session.windows().waitUntilActive(ShellSession::settingsTitle));
    for (const std::string& page : pages) {
        SCOPED_TRACE(page);
        window.waitFor({"layered pane", page});
        expectAllAccessible(window);
        expectTabReachesAll(session, window);
        session.tabTo(window, {"list", "Settings pages"});
        session.keyboard().strike(Key::down);
    }
}

TEST(TheWelcome, HasNamesAndRolesAndIsCompletedByTheKeyboardAlone)
{
    ShellSession session({"audio=none", "a11y=off"});
    session.forgetPreferences();
    session.startProgram({"env", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
    const Accessible window = session.elements().waitFor({"frame", ShellSession::welcomeTitle});
    window.waitFor({"push button", "Grant Accessibility"});
    ASSERT_TRUE(session.windows().waitUntilActive(ShellSession::welcomeTitle));
    expectAllAccessible(window);
    expectTabReachesAll(session, window);

    session.tabTo(window, {"push button", "Grant Accessibility"});
    session.keyboard().strike(Key::space);
    const Accessible question = session.elements().waitFor({"dialog", ShellSession::turnOnQuestion});
    ASSERT_TRUE(session.windows().waitUntilActive("Corvandi"));
    expectAllAccessible(question);
    expectTabReachesAll(session, question);
    session.keyboard().strike(Key::escape);

    ASSERT_TRUE(session.windows().waitUntilActive(ShellSession::welcomeTitle));
    session.tabTo(window, {"push button", "Continue"});
    session.keyboard().strike(Key::enter);
    session.elements().waitFor({"frame", ShellSession::settingsTitle});
}

TEST(TheDialogsOfTheSettings, HaveNamesAndRolesAndAreUsedByTheKeyboardAlone)
{
    ShellSession session({"audio=none"});
    data_folder::write("history.json", R"([{"id":"6BA7B811-9DAD-11D1-80B4-00C04FD430C8",)"
                                       R"("text":"What was said.","date":800000000}])");
    session.startProgram();
    session.openSettings();
    session.choosePage("Vocabulary");
    session.click({"push button", "Add an app"});
    // The menu's last line.
    session.keyboard().strike(Key::up);
    session.keyboard().strike(Key::enter);
    const Accessible chooser = session.elements().waitFor({"dialog", "Choose an App"});
    ASSERT_TRUE(session.windows().waitUntilActive("Choose an App"));
    expectAllAccessible(chooser);
    expectTabReachesAll(session, chooser);
    session.keyboard().strike(Key::escape);
    EXPECT_TRUE(session.elements().waitUntilGone({"dialog", "Choose an App"}));

    session.choosePage("History");
    session.click({"push button", "Clear History"});
    const Accessible question = session.elements().waitFor({"", "Clear all history?"});
    expectAllAccessible(question);
    expectTabReachesAll(session, question);
    session.keyboard().strike(Key::escape);
    EXPECT_TRUE(session.elements().waitUntilGone({"", "Clear all history?"}));
    EXPECT_TRUE(session.elements().find({"label", "What was said.", Match::beginning}));
}

} // namespace
} // namespace corvandi::testing
