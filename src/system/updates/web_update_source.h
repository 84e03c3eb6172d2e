#pragma once

#include "base/worker.h"
#include "ports/update_source.h"
#include "system/updates/update_configuration.h"

#include <chrono>
#include <optional>

namespace corvandi {

/// How long the update server is waited for.
struct UpdatePatience {
    /// Without a byte, while connecting and later.
    std::chrono::milliseconds idle = std::chrono::seconds(20);
    /// Altogether.
    std::chrono::milliseconds total = std::chrono::seconds(60);
};

/// A feed on a web server. It is fetched on a thread that comes with the request and goes with its end.
///
/// Thread: main thread only.
class WebUpdateSource : public UpdateSource {
public:
    /// The longest feed that is read, in bytes.
    static constexpr qsizetype longestFeed = 1'000'000;

    /// Without a configuration there is nowhere to look. `queue` outlives this object.
    WebUpdateSource(std::optional<UpdateConfiguration> configuration, MainQueue& queue,
                    const UpdatePatience& patience = {});

    [[nodiscard]] bool isConfigured() const override { return configuration_.has_value(); }
    [[nodiscard]] std::unique_ptr<Registration> fetch(Handler handler) override;

private:
    std::optional<UpdateConfiguration> configuration_;
    MainQueue& queue_;
    UpdatePatience patience_;
    Worker worker_{QStringLiteral("updates"), Worker::AtEnd::stop};
};

} // namespace corvandi
