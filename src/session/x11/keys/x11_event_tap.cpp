#include "session/x11/keys/x11_event_tap.h"

#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_connection.h"
#include "session/x11/keys/x11_key_event_source.h"

#include <QStringList>

#include <optional>

#include <xcb/xinput.h>

namespace corvandi {
namespace {

/// "Option+key 49": the numbers of the preferences, since a log is read together with them.
QString nameOf(const KeyChord& chord)
{
    QStringList parts;
    if (chord.requiredFlags & modifier_flags::control)
        parts << QStringLiteral("Control");
    if (chord.requiredFlags & modifier_flags::option)
        parts << QStringLiteral("Option");
    if (chord.requiredFlags & modifier_flags::shift)
        parts << QStringLiteral("Shift");
    if (chord.requiredFlags & modifier_flags::command)
        parts << QStringLiteral("Command");
    parts << QStringLiteral("key %1").arg(chord.keyCode);
    return parts.join(QLatin1Char('+'));
}

enum class Releases { ignored, wanted };

/// Changes of the keyboards always, key releases only while there is one to wait for: other keys are
/// nobody's business here.
void selectXinputEvents(const X11Connection& connection, Releases releases)
{
    struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } wanted{{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_HIERARCHY};
    if (releases == Releases::wanted)
        wanted.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
    xcb_input_xi_select_events(connection.get(), connection.root(), 1, &wanted.head);
}

void selectModifierChanges(const X11Connection& connection)
{
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_STATE;
    xcb_xkb_select_events_aux(connection.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                              0, 0, 0, &details);
}

class X11EventTap : public EventTap, private ChordTap {
public:
    X11EventTap(X11Connection connection, SystemLog& log, std::shared_ptr<QString> lastRefusal,
                WatchedChord& watched, Callback callback)
        : connection_(std::move(connection))
        , log_(log)
        , lastRefusal_(std::move(lastRefusal))
        , watched_(watched)
        , callback_(std::move(callback))
        , pump_(
              connection_, [this](const xcb_generic_event_t& event) { handle(event); },
              [this] { log_.write(QStringLiteral("the hotkey's connection to the X server is lost")); })
    {
        selectXinputEvents(connection_, Releases::ignored);
        selectModifierChanges(connection_);
        if (const auto state = readState(connection_))
            modifiers_ = static_cast<uint8_t>(state->held | state->latched | state->locked);
    }
    ~X11EventTap() override { release(); }

    void setEnabled(bool enabled) override
    {
        if (enabled == enabled_)
            return;
        enabled_ = enabled;
        forgetPress();
        if (!enabled)
            release();
        else if (chord_)
            (void)claim(*chord_);
        pump_.drainSoon();
    }

    bool watch(const KeyChord& chord) override
    {
        chord_.reset();
        release();
        if (claim(chord))
            chord_ = chord;
        if (!enabled_)
            release();
        pump_.drainSoon();
        return chord_.has_value();
    }

private:
    struct Press {
        uint16_t device;
        uint32_t x11KeyCode;
        uint16_t virtualKey;
    };

    void release()
    {
        if (grabs_) {
            watched_.chord.reset();
            watched_.tap = nullptr;
        }
        grabs_.reset();
    }

    bool claim(const KeyChord& chord)
    {
        const auto keyCode = x11KeyCode(chord.keyCode);
        if (!keyCode)
            return refuse(QStringLiteral("the hotkey %1 has no key here").arg(nameOf(chord)));
        watched_.chord = X11Chord{*keyCode, x11Mask(chord.requiredFlags)};
        watched_.tap = this;
        grabs_.emplace(connection_, *watched_.chord);
        switch (grabs_->claim()) {
        case ChordGrabs::Outcome::everything:
            lastRefusal_->clear();
            return true;
        case ChordGrabs::Outcome::something:
            log_.write(QStringLiteral("another program holds a part of the hotkey %1").arg(nameOf(chord)));
            return true;
        case ChordGrabs::Outcome::nothing:
            break;
        }
        release();
        return refuse(QStringLiteral("another program holds the hotkey %1").arg(nameOf(chord)));
    }

    /// The same attempt is made again and again until it succeeds.
    bool refuse(const QString& reason)
    {
        if (std::exchange(*lastRefusal_, reason) != reason)
            log_.write(reason);
        return false;
    }

    void handle(const xcb_generic_event_t& event)
    {
        const int type = event.response_type & 0x7F;
        if (type == XCB_GE_GENERIC) {
            const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
            if (generic.extension == connection_.xinputOpcode())
                handleXinput(generic);
        } else if (type == connection_.xkbFirstEvent()) {
            const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
            if (state.xkbType == XCB_XKB_STATE_NOTIFY)
                modifiersChanged(state.keycode, state.mods);
        }
    }

    void handleXinput(const xcb_ge_generic_event_t& event)
    {
        switch (event.event_type) {
        case XCB_INPUT_KEY_PRESS:
            chordPressed(reinterpret_cast<const xcb_input_key_press_event_t&>(event));
            break;
        case XCB_INPUT_KEY_RELEASE:
            keyReleasedUnderGrab(reinterpret_cast<const xcb_input_key_release_event_t&>(event));
            break;
        case XCB_INPUT_RAW_KEY_RELEASE: {
            const auto& release = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
            // Each comes twice: from the keyboard itself, and again from the master that it feeds.
            if (release.deviceid == release.sourceid)
                rawKeyReleased(release.deviceid, release.detail);
            break;
        }
        case XCB_INPUT_HIERARCHY:
            keyboardsChanged(reinterpret_cast<const xcb_input_hierarchy_event_t&>(event));
            break;
        default:
            break;
        }
    }

    void chordPressed(const xcb_input_key_press_event_t& event)
    {
        // While the grab is active the whole keyboard is cut off from the applications: let it go before
        // anything else. From then on its release is an ordinary one.
        selectXinputEvents(connection_, Releases::wanted);
        xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, event.deviceid);
        connection_.flush();
        // What another key does before the keyboard is free again comes here as well.
        if (!enabled_ || !chord_ || event.detail != x11KeyCode(chord_->keyCode)) {
            if (!pressed_)
                forgetPress();
            return;
        }
        if (!isChord(static_cast<uint8_t>(event.mods.effective)))
            return passOn(event);
        const bool isRepeat = (event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0;
        const uint8_t latched = isRepeat ? x11_mask::none : latchedModifiers();
        if (!isRepeat)
            playNeutralKey(event.deviceid);
        beginPress(event.deviceid, event.detail, latched);
    }

    /// Whether a person holds the chord's modifiers, whose keyboard tells `theirs`. The master's are known up
    /// to this event, but typing lets go of them for moments.
    [[nodiscard]] bool isChord(uint8_t theirs) const
    {
        const uint8_t required = x11Mask(chord_->requiredFlags);
        return (required & ~(visibleModifiers() | theirs)) == 0;
    }

    /// The chord's key alone, which is claimed while a text is typed. As a stroke: its end need not be known.
    void passOn(const xcb_input_key_press_event_t& event)
    {
        for (const KeyDirection direction : {KeyDirection::down, KeyDirection::up})
            fakeKey(connection_, static_cast<uint8_t>(event.detail), direction);
        connection_.flush();
        if (!pressed_)
            forgetPress();
    }

    /// Modifiers that wait for the next key, as sticky keys make them. The neutral key uses them up, and to
    /// the person they are held with the chord's key.
    [[nodiscard]] uint8_t latchedModifiers()
    {
        const auto state = readState(connection_);
        pump_.drainSoon();
        return state ? static_cast<uint8_t>(state->latched & ~state->held) : x11_mask::none;
    }

    void beginPress(uint16_t device, uint32_t keyCode, uint8_t latched)
    {
        if (!pressed_)
            watched_.setHeld(device);
        watched_.coveredModifiers = static_cast<uint8_t>(watched_.coveredModifiers | latched);
        pressed_ = Press{device, keyCode, chord_->keyCode};
        // The modifiers have been matched; an event's own are only those of its keyboard.
        report({KeyEventType::keyDown, chord_->keyCode, modifierFlags(modifiers_) | chord_->requiredFlags});
    }

    void catchUp() override
    {
        connection_.sync();
        pump_.drain();
    }

    void claimWithoutModifiers(bool isWanted) override
    {
        if (grabs_)
            grabs_->claimWithoutModifiers(isWanted);
    }

    void pressedUnseen(uint16_t device) override
    {
        const auto keyCode = chord_ ? x11KeyCode(chord_->keyCode) : std::nullopt;
        if (!enabled_ || !keyCode)
            return;
        selectXinputEvents(connection_, Releases::wanted);
        const uint8_t latched = latchedModifiers();
        playNeutralKey(device);
        beginPress(device, *keyCode, latched);
        // Asked for after releases are: one that came before is found here.
        if (pressed_ && !keysDownOn(connection_, requestKeysDownOn(connection_, {device}))[*keyCode])
            endPress();
    }

    /// Tells the application that the modifier is not struck alone, which would open its menu, and the
    /// server that the chord's key shall not repeat: every repeat would be caught by the grab again.
    void playNeutralKey(uint16_t device)
    {
        // Read now: layouts change, and typing puts characters onto empty keys.
        const auto keymap = readKeymap(connection_, device);
        pump_.drainSoon();
        const auto key = keymap ? keymap->neutralKey() : std::nullopt;
        if (!key)
            return;
        fakeDeviceKey(connection_, device, *key, KeyDirection::down);
        fakeDeviceKey(connection_, device, *key, KeyDirection::up);
        // Waited for, so that it comes before whatever the callback sets off.
        connection_.sync();
    }

    /// A release from before the grab was let go; later ones come as raw events. No application has seen
    /// it, nor has the server's account of what is down: a modifier would be stuck.
    void keyReleasedUnderGrab(const xcb_input_key_release_event_t& event)
    {
        if (!chord_ || event.detail != x11KeyCode(chord_->keyCode)) {
            fakeKey(connection_, static_cast<uint8_t>(event.detail), KeyDirection::up);
            connection_.flush();
            uncover(event.detail);
        }
        keyReleased(event.deviceid, event.detail);
    }

    void rawKeyReleased(uint16_t device, uint32_t keyCode)
    {
        if (watched_.takeTypedRelease(device, keyCode))
            return;
        uncover(keyCode);
        keyReleased(device, keyCode);
    }

    /// A person lets go of a modifier that typing had let go of before: the server has nothing to tell.
    void uncover(uint32_t keyCode)
    {
        const auto key = virtualKeyCode(static_cast<uint8_t>(keyCode));
        const uint8_t modifier = key ? modifierOf(*key) : x11_mask::none;
        if (!(watched_.coveredModifiers & modifier))
            return;
        watched_.coveredModifiers = static_cast<uint8_t>(watched_.coveredModifiers & ~modifier);
        report({KeyEventType::flagsChanged, *key, modifierFlags(visibleModifiers())});
    }

    [[nodiscard]] uint8_t visibleModifiers() const
    {
        return static_cast<uint8_t>(modifiers_ | watched_.coveredModifiers);
    }

    void keyReleased(uint16_t device, uint32_t keyCode)
    {
        if (pressed_ && device == pressed_->device && keyCode == pressed_->x11KeyCode)
            endPress();
    }

    void endPress()
    {
        const uint16_t key = pressed_->virtualKey;
        forgetPress();
        report({KeyEventType::keyUp, key, modifierFlags(modifiers_)});
    }

    void forgetPress()
    {
        pressed_.reset();
        watched_.setHeld(std::nullopt);
        selectXinputEvents(connection_, Releases::ignored);
        connection_.flush();
    }

    void modifiersChanged(uint8_t keyCode, uint8_t modifiers)
    {
        if (modifiers == modifiers_)
            return;
        modifiers_ = modifiers;
        if (enabled_)
            report({KeyEventType::flagsChanged, virtualKeyCode(keyCode).value_or(virtual_key::none),
                    modifierFlags(visibleModifiers())});
    }

    void keyboardsChanged(const xcb_input_hierarchy_event_t& event)
    {
        constexpr uint32_t gone =
            XCB_INPUT_HIERARCHY_MASK_SLAVE_REMOVED | XCB_INPUT_HIERARCHY_MASK_DEVICE_DISABLED;
        bool heldKeyboardGone = false;
        for (auto info = xcb_input_hierarchy_infos_iterator(&event); info.rem;
             xcb_input_hierarchy_info_next(&info)) {
            if (pressed_ && info.data->deviceid == pressed_->device && (info.data->flags & gone))
                heldKeyboardGone = true;
        }
        if (grabs_)
            (void)grabs_->claim();
        pump_.drainSoon();
        if (heldKeyboardGone)
            endPress();
    }

    void report(const KeyEvent& event)
    {
        // The server has swallowed what is to be swallowed.
        (void)callback_(event);
    }

    X11Connection connection_;
    SystemLog& log_;
    std::shared_ptr<QString> lastRefusal_;
    WatchedChord& watched_;
    Callback callback_;
    /// What is watched, whether the tap is on or off.
    std::optional<KeyChord> chord_;
    /// Present while the tap is on and watches a chord.
    std::optional<ChordGrabs> grabs_;
    std::optional<Press> pressed_;
    uint8_t modifiers_ = x11_mask::none;
    bool enabled_ = false;
    X11EventPump pump_;
};

} // namespace

std::unique_ptr<EventTap> X11EventTapFactory::create(const KeyChord& chord, EventTap::Callback callback)
{
    auto connection = X11Connection::open(log_);
    if (!connection)
        return nullptr;
    auto tap = std::make_unique<X11EventTap>(std::move(*connection), log_, lastRefusal_, watched_,
                                             std::move(callback));
    if (!tap->watch(chord))
        return nullptr;
    return tap;
}

} // namespace corvandi
