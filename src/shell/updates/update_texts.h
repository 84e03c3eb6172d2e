#pragma once

#include "shell/updates/release.h"
#include "shell/updates/update_failure.h"
#include "shell/updates/update_presenter.h"

/// What the updater says to a person, in the person's language.
namespace corvandi::update_texts {

[[nodiscard]] QString checking();
[[nodiscard]] QString downloading(const Release& release);
[[nodiscard]] QString opening();
[[nodiscard]] UpdateMessage upToDate(const RunningProgram& program);
/// `program` runs on a system that the release's `minimumSystem` names.
[[nodiscard]] UpdateMessage needsNewerSystem(const Release& release, const RunningProgram& program);
[[nodiscard]] UpdateQuestion download(const Release& release, const RunningProgram& program,
                                      Attention attention);
[[nodiscard]] UpdateQuestion install(const Release& release);
[[nodiscard]] UpdateMessage failed(const UpdateFailure& failure);

} // namespace corvandi::update_texts
