#pragma once

#include "platform/user_defaults.h"

#include <QString>
#include <QUrl>

#include <vector>

namespace corvandi {

/// What the user has said about the model server.
struct RewritePreferences {
    /// "rewriteServerEnabled": whether a server may be asked at all. True when absent.
    bool isEnabled = true;
    /// "rewriteServer": its addresses; empty when the usual ones are to be tried, or none is valid.
    std::vector<QUrl> servers;
    /// Whether "rewriteServer" names something else than an address of this machine.
    bool isRefused = false;
    /// "rewriteModel": the model's name; empty when any will do.
    QString model;

    /// Registers the defaults of these keys.
    static void registerDefaults(UserDefaults& defaults);
    [[nodiscard]] static RewritePreferences read(const UserDefaults& defaults);
};

} // namespace corvandi
