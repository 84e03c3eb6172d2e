#pragma once

#include "ports/system_log.h"
#include "system/updates/public_key.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace corvandi {

/// Where updates lie, and whose signature they bear.
struct UpdateConfiguration {
    QUrl feed;
    PublicKey key;

    /// From the two texts that the program was built with (CORVANDI_UPDATE_FEED, CORVANDI_UPDATE_KEY).
    /// Nothing when both are empty, and, with a line in the log, when one of them can't be used: then
    /// updates are disabled.
    [[nodiscard]] static std::optional<UpdateConfiguration> parse(const QString& feed, const QByteArray& key,
                                                                  SystemLog& log);
    /// What this program was built with.
    [[nodiscard]] static std::optional<UpdateConfiguration> builtIn(SystemLog& log);
};

} // namespace corvandi
