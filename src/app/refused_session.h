#pragma once

#include "ports/system_log.h"

#include <QString>

#include <memory>

namespace corvandi {

/// What the program is in a session in which it can't dictate: a tray icon whose menu says why.
///
/// Thread: main thread only, after the application object of the toolkit. `log` outlives it.
class RefusedSession {
public:
    RefusedSession(const QString& words, SystemLog& log);
    ~RefusedSession();
    RefusedSession(const RefusedSession&) = delete;
    RefusedSession& operator=(const RefusedSession&) = delete;

private:
    struct Objects;
    std::unique_ptr<Objects> objects_;
};

} // namespace corvandi
