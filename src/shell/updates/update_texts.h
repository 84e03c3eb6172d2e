#pragma once

#include "ports/notice_presenter.h"
#include "shell/updates/release.h"

/// What the updater says to a person, in the person's language.
namespace corvandi::update_texts {

[[nodiscard]] QString checking();
[[nodiscard]] Notice upToDate(const RunningProgram& program);
/// `program` runs on a system that the release's `minimumSystem` names.
[[nodiscard]] Notice needsNewerSystem(const Release& release, const RunningProgram& program);
[[nodiscard]] Question available(const Release& release, const RunningProgram& program, Attention attention);
[[nodiscard]] Notice failed(const UpdateFailure& failure);

} // namespace corvandi::update_texts
