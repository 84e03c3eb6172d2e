#include "core/hotkey/hotkey_manager.h"

#include <QtGlobal>

#include <limits>

namespace corvandi {
namespace {

uint16_t checkedKeyCode(int64_t code)
{
    if (code < 0 || code > std::numeric_limits<uint16_t>::max())
        qFatal("key code %lld of a keyboard event is out of range", static_cast<long long>(code));
    return static_cast<uint16_t>(code);
}

} // namespace

HotKeyManager::HotKeyManager(EventTapFactory& taps, MainQueue& queue)
    : taps_(taps)
    , queue_(queue)
{
}

HotKeyManager::~HotKeyManager()
{
    stop();
}

bool HotKeyManager::start()
{
    if (tap_)
        return true;
    tap_ = taps_.create(chord_, [this](const KeyEvent& event) { return handle(event); });
    if (!tap_)
        return false;
    tap_->setEnabled(true);
    return true;
}

void HotKeyManager::stop()
{
    if (tap_)
        tap_->setEnabled(false);
    tap_.reset();
    active_ = false;
}

bool HotKeyManager::setChord(const KeyChord& chord)
{
    chord_ = chord;
    return !tap_ || tap_->watch(chord_);
}

TapVerdict HotKeyManager::handle(const KeyEvent& event)
{
    switch (event.type) {
    case KeyEventType::tapDisabledByTimeout:
    case KeyEventType::tapDisabledByUserInput:
        if (tap_)
            tap_->setEnabled(true);
        return TapVerdict::pass;
    case KeyEventType::keyDown:
        return handleKeyDown(checkedKeyCode(event.keyCode), event.flags);
    case KeyEventType::keyUp:
        return handleKeyUp(checkedKeyCode(event.keyCode));
    case KeyEventType::flagsChanged:
        handleFlagsChanged(event.flags);
        return TapVerdict::pass;
    }
    return TapVerdict::pass;
}

TapVerdict HotKeyManager::handleKeyDown(uint16_t code, uint64_t flags)
{
    if (code != chord_.keyCode || !requiredModifiersHeld(flags))
        return TapVerdict::pass;
    // An auto-repeat is swallowed like the press that it repeats.
    if (!active_) {
        active_ = true;
        notify(onStart);
    }
    return TapVerdict::swallow;
}

TapVerdict HotKeyManager::handleKeyUp(uint16_t code)
{
    if (!active_ || code != chord_.keyCode)
        return TapVerdict::pass;
    active_ = false;
    notify(onStop);
    return TapVerdict::swallow;
}

void HotKeyManager::handleFlagsChanged(uint64_t flags)
{
    if (!active_ || requiredModifiersHeld(flags))
        return;
    active_ = false;
    notify(onStop);
}

bool HotKeyManager::requiredModifiersHeld(uint64_t flags) const
{
    return (chord_.requiredFlags & ~flags) == 0;
}

void HotKeyManager::notify(const std::function<void()>& handler)
{
    if (handler)
        queue_.async(handler);
}

} // namespace corvandi
