#pragma once

#include "ports/system_settings.h"

#include <vector>

namespace corvandi::testing {

/// Remembers which pages were opened.
class FakeSystemSettings : public SystemSettings {
public:
    std::vector<SystemSettingsPage> opened;

    void open(SystemSettingsPage page) override { opened.push_back(page); }
};

} // namespace corvandi::testing
