#pragma once

#include "base/main_queue.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

namespace corvandi {

/// Why an update could not be found or shown.
struct UpdateFailure {
    enum class Kind : uint8_t {
        unreachable, ///< no network, no such host, nobody listening, connection closed
        timedOut,    ///< nothing came for too long, or it took too long altogether
        insecure,    ///< a certificate was refused, or a redirection left HTTPS
        refused,     ///< the server answered something else than the feed
        unreadable,  ///< the feed is none, or says something impossible
        untrusted,   ///< the feed's signature is wrong
        incomplete,  ///< the feed ended early
        notOpened,   ///< the release's page could not be opened
    };
    Kind kind;
    /// What exactly happened, for the log; for `refused` and `notOpened` also for the person.
    QString detail;
};

/// Something, or the reason why there is nothing.
template<class T>
using UpdateResult = std::variant<T, UpdateFailure>;

/// The place that says which release is the newest.
///
/// Thread: main thread only; no call waits for the network.
class UpdateSource {
public:
    using Handler = std::function<void(const UpdateResult<QByteArray>&)>;

    virtual ~UpdateSource() = default;

    /// Whether this program was built with a place to look at. If not, nothing may be fetched.
    [[nodiscard]] virtual bool isConfigured() const = 0;
    /// Fetches what the makers have signed, byte by byte as they have, after checking that they have. Sends
    /// nothing but the request for it. `handler` runs once, later; destroying the registration cancels the
    /// request and closes its connection. The source outlives it.
    [[nodiscard]] virtual std::unique_ptr<Registration> fetch(Handler handler) = 0;
};

} // namespace corvandi
