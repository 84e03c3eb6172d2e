#pragma once

#include "ports/system_log.h"

#include <QString>

namespace corvandi {

/// Takes all rights at a folder and at the files in it (also at those that links lead to) from everybody but
/// their owner, as they may come from a backup or another machine that had given some. What fails is
/// logged; a folder that is not there is no failure.
///
/// Waits for the disk, to read the folder. Thread: any.
void makePrivate(const QString& folder, SystemLog& log);

} // namespace corvandi
