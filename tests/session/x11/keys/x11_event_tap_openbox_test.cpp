#include "session/x11/keys/tap_fixture.h"
#include "session/x11/keys/typing_fixture.h"

#include "session/x11/xcb_connection.h"

#include <cstring>

namespace corvandi::testing {
namespace {

using ::testing::Contains;
using ::testing::Not;

/// A window manager that has Alt+Space for itself.
class X11EventTapOpenboxTest : public TapFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(waitUntil([this] { return isGrabbed(connection(), key::space, XCB_MOD_MASK_1); }));
    }

    [[nodiscard]] const X11Connection& connection() const { return keyboard.connection(); }

    /// The window by which the running window manager says that it is there.
    [[nodiscard]] xcb_window_t checkWindow() const
    {
        constexpr const char* name = "_NET_SUPPORTING_WM_CHECK";
        auto* server = connection().get();
        const auto atom = owned(xcb_intern_atom_reply(
            server, xcb_intern_atom(server, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
        const auto property = owned(xcb_get_property_reply(
            server, xcb_get_property(server, 0, connection().root(), atom->atom, XCB_ATOM_WINDOW, 0, 1),
            nullptr));
        if (!property || xcb_get_property_value_length(property.get()) < 4)
            return XCB_NONE;
        return *static_cast<const xcb_window_t*>(xcb_get_property_value(property.get()));
    }

    void restartWindowManager()
    {
        auto* server = connection().get();
        const uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(server, checkWindow(), XCB_CW_EVENT_MASK, &structure);
        connection().sync();
        ASSERT_TRUE(run(QStringLiteral("openbox"), {QStringLiteral("--restart")}));
        ASSERT_TRUE(waitUntil([&] {
            const auto event = owned(xcb_poll_for_event(server));
            return event && (event->response_type & 0x7F) == XCB_DESTROY_NOTIFY;
        }));
        ASSERT_TRUE(waitUntil([this] { return isGrabbed(connection(), key::space, XCB_MOD_MASK_1); }));
    }

    /// The person's chord acts on the tap, and neither on the window manager nor on the application.
    void expectTapWins()
    {
        witness.focus();
        EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
        EXPECT_THAT(witness.takePresses(), Not(Contains(key::space)));
        keyboard.strike(key::a);
        EXPECT_THAT(witness.takePresses(), Contains(key::a)) << "the window manager has opened its menu";
    }

    TestKeyboard keyboard{TestKeyboard::Kind::hardware};
};

TEST_F(X11EventTapOpenboxTest, ItComesBeforeTheWindowManager)
{
    install();
    expectTapWins();
}

TEST_F(X11EventTapOpenboxTest, ItComesBeforeAWindowManagerThatHasRestarted)
{
    install();
    restartWindowManager();
    expectTapWins();
}

TEST_F(X11EventTapOpenboxTest, ItComesBeforeAWindowManagerThatGrabsAgainAfterALayoutChange)
{
    install();
    for (const auto* layout : {"de", "us"}) {
        ASSERT_TRUE(setLayout(QLatin1String(layout)));
        runFor(std::chrono::milliseconds(300));
        ASSERT_TRUE(waitUntil([this] { return isGrabbed(connection(), key::space, XCB_MOD_MASK_1); }));
        expectTapWins();
    }
}

TEST_F(X11EventTapOpenboxTest, TheApplicationsMenuBarStaysClosed)
{
    TypingTarget target;
    keyboard.strike(key::leftAlt);
    ASSERT_TRUE(target.says("focus lost")) << "a lone tap of Alt must open this menu bar";
    keyboard.strike(key::leftAlt);
    ASSERT_TRUE(target.says("focus", 2));

    install();
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
    keyboard.strike(key::b);
    EXPECT_TRUE(target.comesToHold(QStringLiteral("b")));
}

} // namespace
} // namespace corvandi::testing
