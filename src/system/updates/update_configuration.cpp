#include "system/updates/update_configuration.h"

#include "system/net/web_address.h"

namespace corvandi {

std::optional<UpdateConfiguration> UpdateConfiguration::parse(const QString& feed, const QByteArray& key,
                                                              SystemLog& log)
{
    if (feed.isEmpty() && key.isEmpty())
        return std::nullopt;
    const QUrl url(feed, QUrl::StrictMode);
    if (!isSafeAddress(url)) {
        log.write(
            QStringLiteral("updates are disabled: the feed's address \"%1\" is neither HTTPS nor on this "
                           "machine")
                .arg(feed));
        return std::nullopt;
    }
    std::optional<PublicKey> publicKey = PublicKey::fromBase64(key);
    if (!publicKey) {
        log.write(QStringLiteral("updates are disabled: \"%1\" is no Ed25519 key in base64")
                      .arg(QString::fromUtf8(key)));
        return std::nullopt;
    }
    return UpdateConfiguration{url, *std::move(publicKey)};
}

std::optional<UpdateConfiguration> UpdateConfiguration::builtIn(SystemLog& log)
{
    return parse(QStringLiteral(CORVANDI_UPDATE_FEED), QByteArrayLiteral(CORVANDI_UPDATE_KEY), log);
}

} // namespace corvandi
