#pragma once

#include "base/worker.h"
#include "ports/pasteboard.h"
#include "session/x11/clipboard/selection_reader.h"
#include "session/x11/xcb_connection.h"

#include <QMimeData>
#include <QPointer>
#include <QSocketNotifier>
#include <QString>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// What this program puts on the clipboard. It is published empty and gains its forms afterwards: other
/// programs are told what there is when they ask, which is never before the event loop runs on.
///
/// Thread: main thread only. Owned by Qt's clipboard, which deletes it when another program takes over.
class ClipboardContent : public QMimeData {
public:
    /// Adds one form of `pasteboard_type`, or replaces it; false for a type that has no counterpart here.
    bool addForm(const QString& value, const QString& type);
    /// The plain text; nothing when that form is missing.
    [[nodiscard]] std::optional<QString> plainText() const;
    [[nodiscard]] bool isConcealed() const;
};

/// The clipboard of an X11 session (the CLIPBOARD selection).
///
/// Writing goes through Qt's clipboard, so that this program's own windows, conversions for other
/// programs and the hand-over to a clipboard manager at a normal exit work as for any Qt program.
/// Without a manager the content ends with the program. Concealed content also carries the hint
/// "x-kde-passwordManagerHint" = "secret".
///
/// Reading and counting use a connection of their own. Reading never waits for the owner: one that is
/// hung, ends half-way or has no text gives nothing, after 300 ms at the latest; a text of more than
/// 64 MiB counts as none. What this program itself has put there is answered at once. A reading that
/// is under way when this object goes gives nothing.
///
/// `changeCount` costs one round trip and counts every change of the owner, its death included. On a
/// server without XFixes changes can't be seen: each call then gives a new number.
///
/// Thread: main thread only, with a QGuiApplication on X11.
class X11Pasteboard : public Pasteboard {
public:
    explicit X11Pasteboard(MainQueue& queue);
    ~X11Pasteboard() override;
    X11Pasteboard(const X11Pasteboard&) = delete;
    X11Pasteboard& operator=(const X11Pasteboard&) = delete;

    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override;
    [[nodiscard]] QCoro::Task<bool> isConcealed() override;
    void clearContents() override;
    /// False for an unknown type, when `clearContents` could not take the clipboard, and when another
    /// program has taken it since. Taking fails in the rare case that another program has copied in this
    /// very turn of the event loop: Qt, which has not heard of it, uses too old a time stamp.
    bool setString(const QString& value, const QString& type) override;
    [[nodiscard]] int64_t changeCount() override;

private:
    struct Arrival {
        XcbPtr<xcb_generic_event_t> event;
        std::optional<OwnerChange> ownerChange;
    };

    [[nodiscard]] bool isOwner() const;
    [[nodiscard]] std::shared_ptr<SelectionReader> startReader(std::deque<xcb_atom_t> forms);
    [[nodiscard]] std::vector<std::shared_ptr<SelectionReader>> activeReaders();
    void collectEvents();
    void work();
    void workLater();
    void dispatch(const Arrival& arrival);

    MainQueue& queue_;
    XcbConnection x_;
    SelectionAtoms atoms_;
    SelectionOwnerWatch ownerWatch_;
    int64_t blindCount_ = 0;
    QSocketNotifier readable_;
    /// Read from the connection, not yet seen by the readers. Waiting for a reply reads events, too, and
    /// may happen inside calls in which no coroutine must be resumed.
    std::deque<Arrival> arrivals_;
    bool isWorkScheduled_ = false;
    /// Each is owned by the coroutine that waits for it.
    std::vector<std::weak_ptr<SelectionReader>> readers_;
    /// Ours for as long as Qt's clipboard keeps it.
    QPointer<ClipboardContent> content_;
    Life life_;
};

} // namespace corvandi
