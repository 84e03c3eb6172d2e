#include "shell/updates/updater_view_model.h"

namespace corvandi {

UpdaterViewModel::UpdaterViewModel(Updater& updater)
    : updater_(updater)
{
    updater_.start();
    observation_ =
        updater_.observeCanCheckForUpdates([this](bool canCheckForUpdates) { assign(canCheckForUpdates); });
}

void UpdaterViewModel::checkForUpdates()
{
    updater_.checkForUpdates();
}

void UpdaterViewModel::assign(bool canCheckForUpdates)
{
    if (canCheckForUpdates_ == canCheckForUpdates)
        return;
    canCheckForUpdates_ = canCheckForUpdates;
    Q_EMIT canCheckForUpdatesChanged();
}

} // namespace corvandi
