#include "platform/linux/tray/tray_host_watch.h"

#include <utility>

namespace corvandi {
namespace {

constexpr std::chrono::milliseconds atOnce{0};

} // namespace

TrayHostWatch::TrayHostWatch(MainQueue& queue, Callbacks callbacks)
    : queue_(queue)
    , callbacks_(std::move(callbacks))
    , windowTray_([this] { windowTrayAppeared(); })
    , itemTray_([this](bool isThere) { itemTrayAnswered(isThere); })
{
    if (!itemTray_.isBusThere())
        timer_ = queue_.after(atOnce, [this] { lookForWindowTray(); });
}

void TrayHostWatch::itemTrayAnswered(bool isThere)
{
    if (isThere)
        reportAfter(atOnce);
    else
        lookForWindowTray();
}

void TrayHostWatch::lookForWindowTray()
{
    if (windowTray_.isThere())
        windowTrayAppeared();
    else if (!std::exchange(isMissReported_, true))
        callbacks_.notYet();
}

void TrayHostWatch::windowTrayAppeared()
{
    // The answer decides; it comes back here when it is no.
    if (!itemTray_.isAsking())
        reportAfter(grace);
}

void TrayHostWatch::reportAfter(std::chrono::milliseconds delay)
{
    timer_ = queue_.after(delay, [this] {
        // A tray of the newer kind has started in the meantime.
        if (itemTray_.isAsking())
            return;
        const std::function<void()> found = callbacks_.found;
        found();
    });
}

} // namespace corvandi
