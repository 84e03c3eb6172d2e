#pragma once

#include "base/main_queue.h"
#include "ports/system_log.h"
#include "system/accessibility/focus_cache.h"

#include <QThread>

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

class FocusWorker;

/// Knows which element has the keyboard focus. A worker thread follows what the applications announce on
/// the accessibility bus; asking looks into its notes and waits for nobody.
///
/// Unknown (nothing) is the answer while the bus is missing or on its way back, for applications that
/// expose nothing, and when one hangs before it has told what its focused element is. An application
/// that hangs later keeps the element that it had. Being asked also makes the worker read the element
/// again, so that an answer is never wrong twice.
///
/// What an application does not tell, nobody can know: the page inside a window that another process
/// draws is unknown or counts as its container, and a GTK 4 entry that only hides its characters (other
/// than that toolkit's password entry) looks like any other entry. Text widgets of GTK 4 without an entry
/// around them, such as the entry rows of libadwaita, never say that they have the focus: there the element
/// before them stays the answer. Pages of Chromium are unknown unless it was told to expose them.
///
/// After the focus has moved, an answer may be the one before for as long as the application needs to
/// announce it: 2 to 20 milliseconds, in GTK 3 and Chromium up to 50, all on a busy machine. A refresh
/// shortens that to the time until the application has processed the key or click itself.
///
/// The bus missing, slow, hung or dying ends nothing: the log gets one line, and the connection is made
/// again when the bus is back. While nothing changes, nothing runs.
///
/// Thread: main thread only. The event loop need not run.
class AtSpiFocus : public FocusedElementMonitor {
public:
    /// The process of the active window; called on the main thread, each time that the focus is asked
    /// for. Nothing if there is no active window or its process is unknown.
    using ActiveProcess = std::function<std::optional<pid_t>()>;

    /// `queue` and `log` must outlive it; `log` is written to from any thread.
    AtSpiFocus(ActiveProcess activeProcess, MainQueue& queue, SystemLog& log);
    /// Waits for the worker, which may be waiting for an application: 100 milliseconds at the most.
    ~AtSpiFocus() override;

    AtSpiFocus(const AtSpiFocus&) = delete;
    AtSpiFocus& operator=(const AtSpiFocus&) = delete;

    /// The focused element of the active window. Looking it up takes some microseconds; finding the
    /// process of the active window adds what `activeProcess` needs.
    [[nodiscard]] std::optional<FocusedElement> focusedElement() override;
    /// Takes what the application needs to answer, on an idle machine less than a millisecond; one that
    /// hangs is given 100 milliseconds, one that has been silent before none.
    [[nodiscard]] std::unique_ptr<Registration> refresh(std::function<void()> done) override;

private:
    ActiveProcess activeProcess_;
    MainQueue& queue_;
    FocusCache cache_;
    QThread thread_;
    /// Lives on the thread, which destroys it when it ends.
    FocusWorker* worker_;
};

} // namespace corvandi
