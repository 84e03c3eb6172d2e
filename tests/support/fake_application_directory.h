#pragma once

#include "ports/application_directory.h"

#include <map>

namespace corvandi::testing {

/// Applications that the test makes up.
class FakeApplicationDirectory : public ApplicationDirectory {
public:
    std::vector<RunningApplication> running;
    std::vector<InstalledApplication> installed;
    std::map<QString, QString> icons;
    int iconsAsked = 0;

    [[nodiscard]] std::vector<RunningApplication> runningApplications() override { return running; }
    [[nodiscard]] std::vector<InstalledApplication> installedApplications() override { return installed; }
    [[nodiscard]] std::optional<QString> iconOf(const QString& bundleID) override
    {
        ++iconsAsked;
        const auto icon = icons.find(bundleID);
        return icon == icons.end() ? std::nullopt : std::optional(icon->second);
    }
};

} // namespace corvandi::testing
