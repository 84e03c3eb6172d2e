// The settings' Vocabulary and History pages work with what is dictated.

#include "data_folder.h"
#include "good_enough.h"
#include "shell_session.h"

#include "harness/clipboard.h"

#include <algorithm>

namespace corvandi::testing {
namespace {

using namespace harness;
using Kind = TargetApplication::Kind;
using Match = Accessible::Sought::Match;

bool mentions(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(ARuleAddedForOneApplication, IsHeardThereAndNotElsewhere)
{
    ShellSession session;
    const TargetApplication elsewhere(Kind::gtkField, session.folder());
    const TargetApplication there(Kind::qtField, session.folder());
    session.startProgram();
    session.openSettings();
    session.choosePage("Vocabulary");
    session.elements().waitFor({"label", "No Replacements"});
    EXPECT_FALSE(
        session.elements().waitFor({"push button", "Add Replacement"}).is(Accessible::State::enabled));

    session.click({"push button", "Add an app"});
    // Menus that pop up are in no window; this one has the applications in alphabetical order.
    session.keyboard().strike(Key::down);
    session.keyboard().strike(Key::down);
    session.keyboard().strike(Key::enter);
    session.elements().waitFor({"push button", "Remove qt_text_field"});
    session.fill({"text", "Heard"}, "ten");
    session.fill({"text", "Replace with"}, "twelve");
    session.click({"push button", "Add Replacement"});
    session.elements().waitFor({"push button", "Delete replacement", Match::beginning});
    session.keepScreenshot("rule");

    there.activate();
    const std::string text = session.dictate(recordings::goForward(), there);
    EXPECT_TRUE(mentions(text, "twelve meters")) << text;
    elsewhere.activate();
    const std::string other = session.dictate(recordings::goForward(), elsewhere);
    EXPECT_TRUE(saysWhatWasSaid(other, recordings::goForward().reference));
}

class TheHistoryPage : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<Accessible> all(const std::string& role, const std::string& beginning)
    {
        return session.elements().findAll({role, beginning, Match::beginning});
    }
    /// The dictated texts that the page shows, from top to bottom.
    [[nodiscard]] std::vector<std::string> shownTexts(const std::vector<std::string>& among)
    {
        std::vector<std::string> shown;
        session.elements().walk([&](const Accessible& element) {
            const std::string name = element.name();
            if (std::find(among.begin(), among.end(), name) != among.end() &&
                (shown.empty() || shown.back() != name))
                shown.push_back(name);
        });
        return shown;
    }

    ShellSession session;
};

TEST_F(TheHistoryPage, ListsSearchesCopiesDeletesAndClearsWhatWasDictated)
{
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string older = session.dictate(recordings::goForward(), target);
    const std::string newer = session.dictate(recordings::goSomewhere(), target);
    const std::vector<std::string> both{newer, older};
    ASSERT_TRUE(data_folder::waitForHistory(both));
    session.openSettings();
    session.choosePage("History");
    EXPECT_TRUE(waitUntil([&] { return shownTexts(both) == both; })) << session.elements().outline();
    session.keepScreenshot("list");

    session.fill({"text", "Search History"}, "forward");
    EXPECT_TRUE(waitUntil([&] { return shownTexts(both) == std::vector{older}; }));
    session.keyboard().strike(Key::d);
    session.elements().waitFor({"label", "No Matches"});
    for (size_t i = 0; i < std::string("forwardd").size(); ++i)
        session.keyboard().strike(Key::backspace);
    EXPECT_TRUE(waitUntil([&] { return shownTexts(both) == both; }));

    session.click(all("push button", "Copy").at(1));
    EXPECT_TRUE(clipboard::waitForText(older));
    EXPECT_FALSE(clipboard::hasForm("org.nspasteboard.ConcealedType"));
    EXPECT_FALSE(clipboard::hasForm("x-kde-passwordManagerHint"));

    session.click(all("push button", "Delete").at(0));
    EXPECT_TRUE(waitUntil([&] { return shownTexts(both) == std::vector{older}; }));
    EXPECT_TRUE(data_folder::waitForHistory({older}));

    session.click({"push button", "Clear History"});
    session.elements().waitFor({"label", "Clear all history?"});
    session.keepScreenshot("question");
    session.click({"push button", "Cancel"});
    EXPECT_TRUE(session.elements().waitUntilGone({"label", "Clear all history?"}));
    EXPECT_TRUE(data_folder::waitForHistory({older}));

    session.click({"push button", "Clear History"});
    const Accessible question = session.elements().waitFor({"", "Clear all history?"});
    session.click(question.waitFor({"push button", "Clear History"}));
    session.elements().waitFor({"label", "No History"});
    EXPECT_TRUE(data_folder::waitForHistory({}));
    EXPECT_FALSE(session.elements().find({"push button", "Clear History"}));
    EXPECT_FALSE(session.elements().find({"text", "Search History"}));
}

} // namespace
} // namespace corvandi::testing
