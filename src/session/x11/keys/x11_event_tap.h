#pragma once

#include "ports/event_tap.h"
#include "ports/system_log.h"
#include "session/x11/keys/watched_chord.h"

#include <QString>

#include <memory>

namespace corvandi {

/// The keyboard of an X session: a chord is claimed in advance, and the tap sees that chord and the
/// modifier keys, no other key.
///
/// A matched key-down is swallowed whatever the callback says, with its repeats and its key-up. After
/// it a key without any meaning is played, so that the application does not take the modifier for a
/// lone tap that opens its menu, and so that the chord does not repeat; hence the application sees one
/// key without a symbol. (A layout that uses all 248 keys leaves none for this.)
///
/// While a text is typed the chord's key is claimed without its modifiers, too, since typing lets go of them
/// for moments; struck alone, it is passed on as a stroke.
///
/// The claim comes before window managers and other programs that hold the same chord, survives their
/// restart and changes of the layout, and follows keyboards that are plugged in. It is refused only
/// when a program of the same kind has it.
///
/// Nothing ever waits for this process: when it is killed or exits, the server takes the claim back; when
/// it is stopped, a matched key-down holds its own keyboard until the key is released, at the longest, and
/// what is struck on that keyboard meanwhile reaches nobody.
///
/// X server gone: the log says so once, and the tap is silent from then on.
class X11EventTapFactory : public EventTapFactory {
public:
    /// `log` and `watched` must outlive the taps; the tap that is on keeps `watched` up to date.
    X11EventTapFactory(SystemLog& log, WatchedChord& watched)
        : log_(log)
        , watched_(watched)
    {
    }

    /// Each tap has a connection of its own. Refused without a server, without XInput 2.2, XKB or XTEST,
    /// for a key that X can't name, and when another program holds the chord; the log says which, once until
    /// it is another reason or a tap was there in between.
    [[nodiscard]] std::unique_ptr<EventTap> create(const KeyChord& chord,
                                                   EventTap::Callback callback) override;

private:
    SystemLog& log_;
    /// Shared with the taps, which may be told to watch other chords.
    std::shared_ptr<QString> lastRefusal_ = std::make_shared<QString>();
    WatchedChord& watched_;
};

} // namespace corvandi
