#include "platform/linux/language_model/rewrite_preferences.h"

#include "platform/linux/language_model/server_address.h"

namespace corvandi {
namespace {

const QString enabledKey = QStringLiteral("rewriteServerEnabled");
const QString serverKey = QStringLiteral("rewriteServer");
const QString modelKey = QStringLiteral("rewriteModel");

} // namespace

void RewritePreferences::registerDefaults(UserDefaults& defaults)
{
    defaults.registerDefaults({{enabledKey, true}});
}

RewritePreferences RewritePreferences::read(const UserDefaults& defaults)
{
    const QString server = defaults.string(serverKey).value_or(QString()).trimmed();
    RewritePreferences preferences{
        .isEnabled = defaults.boolean(enabledKey),
        .servers = server.isEmpty() ? std::vector<QUrl>() : serverAddresses(server),
        .isRefused = false,
        .model = defaults.string(modelKey).value_or(QString()).trimmed(),
    };
    preferences.isRefused = !server.isEmpty() && preferences.servers.empty();
    return preferences;
}

} // namespace corvandi
