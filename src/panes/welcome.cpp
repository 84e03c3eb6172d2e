#include "panes/welcome.h"

#include <QCoreApplication>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

constexpr MainQueue::Duration tickInterval = 1s;

} // namespace

Welcome::Welcome(PermissionsModel& permissions, MainQueue& queue, std::function<void()> onGetStarted)
    : permissions_(permissions)
    , queue_(queue)
    , onGetStarted_(std::move(onGetStarted))
{
}

QString Welcome::buttonTitle() const
{
    return permissions_.allGranted() ? QCoreApplication::translate("WelcomeView", "Get Started")
                                     : QCoreApplication::translate("WelcomeView", "Continue");
}

void Welcome::getStarted() const
{
    if (onGetStarted_)
        onGetStarted_();
}

void Welcome::appear()
{
    permissions_.refresh();
    ticks_ = queue_.every(tickInterval, [this] {
        if (!permissions_.allGranted())
            permissions_.refresh();
    });
}

void Welcome::disappear()
{
    ticks_.reset();
}

} // namespace corvandi
