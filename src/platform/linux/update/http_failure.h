#pragma once

#include "updates/update_failure.h"

#include <QNetworkReply>

namespace corvandi {

/// What went wrong with a request that did not get its answer, or not all of it.
[[nodiscard]] UpdateFailure failureOf(const QNetworkReply& reply);

} // namespace corvandi
