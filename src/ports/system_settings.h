#pragma once

namespace corvandi {

/// Pages of the desktop's own settings.
enum class SystemSettingsPage { accessibility, languageModel };

/// The desktop's settings program.
///
/// Thread: main thread only. Never waits for it.
class SystemSettings {
public:
    virtual ~SystemSettings() = default;

    /// Opens the page. A desktop that has none tells the user in words where to look instead.
    virtual void open(SystemSettingsPage page) = 0;
};

} // namespace corvandi
