#pragma once

#include "ports/system_log.h"

#include <functional>
#include <mutex>
#include <vector>

namespace corvandi::testing {

/// Keeps the lines that were logged.
class RecordingLog : public SystemLog {
public:
    [[nodiscard]] std::vector<QString> lines() const
    {
        const std::lock_guard guard(mutex_);
        return lines_;
    }
    [[nodiscard]] bool contains(const QString& part) const
    {
        for (const QString& line : lines()) {
            if (line.contains(part))
                return true;
        }
        return false;
    }

    /// Runs for each line, before anybody can read it.
    std::function<void(const QString& line)> onLine;

protected:
    void writeLine(const QString& line) override
    {
        if (onLine)
            onLine(line);
        const std::lock_guard guard(mutex_);
        lines_.push_back(line);
    }

private:
    mutable std::mutex mutex_;
    std::vector<QString> lines_;
};

} // namespace corvandi::testing
