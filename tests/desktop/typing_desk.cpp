#include "typing_desk.h"

#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"
#include "support/event_loop.h"

#include <QDeadlineTimer>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

/// An application records each character; asking more often would keep it from its work.
constexpr auto betweenLooks = 30ms;
/// How long an application may take for a change, on a machine under load.
constexpr auto patience = 10s;

QCoro::Task<> store(QCoro::Task<Insertion> task, std::shared_ptr<std::optional<bool>> result)
{
    const Insertion insertion = co_await task;
    *result = insertion.outcome == Insertion::Outcome::inserted;
}

} // namespace

void TypingDesk::open(TargetKind kind)
{
    target_.reset();
    folder_.emplace();
    target_.emplace(kind, folder_->path().toStdString());
    // A window of the target before may still have had the focus when this one was looked for.
    constexpr uint8_t f12 = 96;
    const bool getsKeys = waitUntil([&] {
        person_.strike(f12);
        runFor(betweenLooks);
        return !target_->keyPresses().empty();
    });
    if (!getsKeys)
        throw harness::HarnessError("the target does not get keys");
}

QString TypingDesk::text() const
{
    // In a terminal, the Return key sends a carriage return.
    return QString::fromStdString(target_->text()).replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

std::shared_ptr<std::optional<bool>> TypingDesk::begin(const QString& text, InsertionMethod method)
{
    auto result = std::make_shared<std::optional<bool>>();
    const auto task = store(injector_.insert(text, method, [] { return true; }), result);
    return result;
}

bool TypingDesk::insert(const QString& text, InsertionMethod method)
{
    const auto result = begin(text, method);
    return waitUntil([&] { return result->has_value(); }, patience) && **result;
}

bool TypingDesk::waitForText(const QString& expected) const
{
    QString held;
    QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        const QString before = std::exchange(held, text());
        if (held == expected)
            return true;
        if (held != before)
            deadline.setRemainingTime(patience);
        runFor(betweenLooks);
    }
    return false;
}

void TypingDesk::setLocks(uint8_t modifiers) const
{
    corvandi::setLocks(person_.connection(), x11_mask::all, modifiers);
    person_.connection().sync();
}

uint8_t TypingDesk::locks() const
{
    const auto state = readState(person_.connection());
    return state ? state->locked : x11_mask::none;
}

void TypingDesk::setGroup(uint8_t group) const
{
    xcb_xkb_latch_lock_state(person_.connection().get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    person_.connection().sync();
}

bool TypingDesk::setAccessibility(uint32_t controls) const
{
    const auto& connection = person_.connection();
    const auto present = owned(xcb_xkb_get_controls_reply(
        connection.get(), xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!present)
        return false;
    const auto& c = *present;
    constexpr uint32_t enabled = XCB_XKB_CONTROL_CONTROLS_ENABLED;
    constexpr uint32_t options = XCB_XKB_BOOL_CTRL_STICKY_KEYS;
    xcb_xkb_set_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0,
                         c.mouseKeysDfltBtn, c.groupsWrap, c.accessXOption | XCB_XKB_AX_OPTION_TWO_KEYS,
                         keyboard_control::all, controls, enabled | options, c.repeatDelay, c.repeatInterval,
                         c.slowKeysDelay, c.debounceDelay, c.mouseKeysDelay, c.mouseKeysInterval,
                         c.mouseKeysTimeToMax, c.mouseKeysMaxSpeed, c.mouseKeysCurve, c.accessXTimeout,
                         c.accessXTimeoutMask, c.accessXTimeoutValues, c.accessXTimeoutOptionsMask,
                         c.accessXTimeoutOptionsValues, c.perKeyRepeat);
    connection.sync();
    return accessibility() == controls;
}

uint32_t TypingDesk::accessibility() const
{
    const auto& connection = person_.connection();
    const auto present = owned(xcb_xkb_get_controls_reply(
        connection.get(), xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return present ? present->enabledControls & keyboard_control::all : 0;
}

} // namespace corvandi::testing
