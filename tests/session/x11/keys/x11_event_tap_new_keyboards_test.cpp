#include "session/x11/keys/tap_fixture.h"

#include "session/x11/keys/watched_chord.h"

#include <xcb/xinput.h>

namespace corvandi::testing {
namespace {

class X11EventTapFollowsKeyboardsTest : public TapFixture {
protected:
    /// Plugs in a second pair of master devices, which brings a slave keyboard along.
    [[nodiscard]] std::optional<KeyboardDevice> plugIn()
    {
        const auto before = slaveKeyboards(keyboard.connection());
        struct {
            xcb_input_add_master_t head;
            char name[8];
        } change{{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, sizeof(change) / 4, 6, 1, 1}, "second"};
        xcb_input_xi_change_hierarchy(keyboard.connection().get(), 1,
                                      reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change));
        for (const KeyboardDevice& device : slaveKeyboards(keyboard.connection())) {
            const bool known = std::any_of(before.begin(), before.end(),
                                           [&](const KeyboardDevice& old) { return old.id == device.id; });
            if (!known)
                return device;
        }
        return std::nullopt;
    }

    void unplug(const KeyboardDevice& device)
    {
        const xcb_input_remove_master_t change{XCB_INPUT_HIERARCHY_CHANGE_TYPE_REMOVE_MASTER,
                                               sizeof(change) / 4,
                                               device.master,
                                               XCB_INPUT_CHANGE_MODE_FLOAT,
                                               {},
                                               0,
                                               0};
        xcb_input_xi_change_hierarchy(keyboard.connection().get(), 1,
                                      reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change));
        (void)slaveKeyboards(keyboard.connection());
    }

    TestKeyboard keyboard{TestKeyboard::Kind::synthetic};
};

TEST_F(X11EventTapFollowsKeyboardsTest, AKeyboardThatIsPluggedInLaterHasTheChordToo)
{
    install();
    const auto device = plugIn();
    ASSERT_TRUE(device);
    {
        TestKeyboard second(device->id);
        EXPECT_TRUE(waitUntil([&] {
            second.press(key::leftAlt);
            second.strike(key::space);
            second.release(key::leftAlt);
            return count(KeyEventType::keyUp) > 0;
        }));
    }
    unplug(*device);
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
}

TEST_F(X11EventTapFollowsKeyboardsTest, AKeyboardThatIsPulledOutWhileTheChordIsHeldEndsThePress)
{
    const auto device = plugIn();
    ASSERT_TRUE(device);
    install();
    TestKeyboard second(device->id);
    second.press(key::leftAlt);
    second.press(key::space);
    ASSERT_TRUE(hears(KeyEventType::keyDown));
    unplug(*device);
    EXPECT_TRUE(hears(KeyEventType::keyUp));
}

} // namespace
} // namespace corvandi::testing
