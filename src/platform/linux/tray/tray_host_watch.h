#pragma once

#include "base/main_queue.h"
#include "platform/linux/tray/item_tray.h"
#include "platform/linux/tray/xembed_tray.h"

#include <chrono>
#include <functional>
#include <memory>

namespace corvandi {

/// Waits until the desktop has a tray. There are two kinds: programs register an item with the first
/// over the session bus and hand a window to the second over the X server. Panels that have both may
/// offer the second a moment earlier, and a program that has decided for one stays there; so the second
/// kind counts only when the first does not follow.
///
/// Without a session bus only the second kind is looked for. A tray of the first kind that does not
/// answer is waited for as long as it takes, and blocks nothing: the toolkit, which asks the same
/// question, would wait for the answer.
///
/// Thread: main thread only.
class TrayHostWatch {
public:
    /// How long a tray of the older kind waits for the newer one.
    static constexpr std::chrono::milliseconds grace{1000};

    struct Callbacks {
        /// Runs when there is a tray, and again for each that starts later. It may destroy the watch.
        std::function<void()> found;
        /// Runs at most once, when there is no tray at the start.
        std::function<void()> notYet;
    };

    /// The callbacks run later, never inside this call.
    TrayHostWatch(MainQueue& queue, Callbacks callbacks);

private:
    void itemTrayAnswered(bool isThere);
    void lookForWindowTray();
    void windowTrayAppeared();
    void reportAfter(std::chrono::milliseconds delay);

    MainQueue& queue_;
    Callbacks callbacks_;
    bool isMissReported_ = false;
    std::unique_ptr<Timer> timer_;
    XEmbedTray windowTray_;
    ItemTray itemTray_;
};

} // namespace corvandi
