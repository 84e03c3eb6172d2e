#pragma once

#include "base/awaitables.h"
#include "base/main_queue.h"
#include "session/x11/xcb_connection.h"

#include <QString>
#include <QStringDecoder>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace corvandi {

enum class OwnerChange {
    /// A program has taken the selection (or given it up).
    taken,
    /// The owner has ended, or its window has.
    lost,
};

/// Counts the changes of a selection's owner through XFixes, from events of the given connection.
///
/// Thread: main thread only.
class SelectionOwnerWatch {
public:
    SelectionOwnerWatch(const XcbConnection& x, xcb_atom_t selection);

    /// The server tells of changes; false without XFixes.
    [[nodiscard]] bool isWatching() const { return eventType_ != 0; }
    /// Counts the change that this event reports; nothing when it is another event.
    std::optional<OwnerChange> handle(const xcb_generic_event_t& event);
    /// The changes so far, of either kind.
    [[nodiscard]] int64_t count() const { return count_; }

private:
    uint8_t eventType_ = 0;
    xcb_atom_t selection_;
    int64_t count_ = 0;
};

struct SelectionAtoms {
    explicit SelectionAtoms(const XcbConnection& x);

    xcb_atom_t clipboard;
    xcb_atom_t utf8String;
    /// Password managers say "secret" in this form.
    xcb_atom_t managerHint;
    xcb_atom_t incr;
    /// Where owners put what we have asked for.
    xcb_atom_t transfer;
};

/// Fetches the clipboard's content once from whatever program owns it, as text of one of the given forms,
/// whole or in parts (INCR). It only sends questions and works upon events that it is handed, so it waits for
/// nobody. The result is nothing when the owner has none of the forms (or an empty one, which many
/// programs answer instead), ends during the transfer, sends more than 64 MiB, or has not finished
/// within 300 ms.
///
/// The result may resume a coroutine that lets go of the reader: whoever calls it holds a share.
///
/// Thread: main thread only.
class SelectionReader : public std::enable_shared_from_this<SelectionReader> {
public:
    /// `forms` are tried in this order.
    SelectionReader(const XcbConnection& x, const SelectionAtoms& atoms, std::deque<xcb_atom_t> forms);
    ~SelectionReader();
    SelectionReader(const SelectionReader&) = delete;
    SelectionReader& operator=(const SelectionReader&) = delete;

    /// Sends the question; time runs from here.
    void start(MainQueue& queue);
    [[nodiscard]] const OneShot<std::optional<QString>>& result() const { return result_; }

    /// Takes an event of the connection; those that concern others are ignored.
    void handle(const xcb_generic_event_t& event);
    /// Takes the news that the clipboard's owner has ended: nothing more comes than has come.
    void handleLostOwner(const xcb_generic_event_t& event);
    /// There is a part to fetch: `readPiece` is to be called soon, but not before other work is done.
    [[nodiscard]] bool hasPieceToRead() const { return phase_ == Phase::reading; }
    /// Fetches at most 64 KiB from the X server, in one round trip.
    void readPiece();
    /// Ends with nothing, unless it has ended already.
    void giveUp() { finish(std::nullopt); }

private:
    enum class Phase { converting, reading, awaitingPart, finished };

    void tryNextForm();
    void onSelectionNotify(const xcb_selection_notify_event_t& notice);
    void onPropertyNotify(const xcb_property_notify_event_t& notice);
    void beginPart();
    void takePiece(xcb_get_property_reply_t& piece);
    void endPart();
    void finish(std::optional<QString> text);

    const XcbConnection& x_;
    const SelectionAtoms& atoms_;
    xcb_window_t window_;
    /// Not tried yet.
    std::deque<xcb_atom_t> forms_;
    /// Number of the latest question on the connection.
    uint32_t question_ = 0;
    Phase phase_ = Phase::converting;
    bool comesInParts_ = false;
    bool hasLostOwner_ = false;
    uint32_t partOffset_ = 0;
    size_t received_ = 0;
    std::optional<QStringDecoder> decoder_;
    QString text_;
    OneShot<std::optional<QString>> result_;
    std::unique_ptr<Timer> timeLimit_;
};

} // namespace corvandi
