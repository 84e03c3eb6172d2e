#pragma once

#include <QString>

#include <cstdint>
#include <variant>

namespace corvandi {

/// Why an update could not be found, fetched or opened.
struct UpdateFailure {
    enum class Kind : uint8_t {
        unreachable, ///< no network, no such host, nobody listening, connection closed
        timedOut,    ///< nothing came for too long, or it took too long altogether
        insecure,    ///< a certificate was refused, or a redirection left HTTPS
        refused,     ///< the server answered something else than the file
        unreadable,  ///< the feed is none, or says something impossible
        untrusted,   ///< the feed's signature is wrong
        incomplete,  ///< the package ended early
        tampered,    ///< the package is not the one that was signed
        notStored,   ///< the package could not be written or read
        notOpened,   ///< the system's installer could not be started
    };
    Kind kind;
    /// What exactly happened, for the log; for `refused`, `notStored` and `notOpened` also for the person.
    QString detail;
};

/// Something, or the reason why there is nothing.
template<class T>
using UpdateResult = std::variant<T, UpdateFailure>;

} // namespace corvandi
