#pragma once

#include <QObject>
#include <QString>

namespace corvandi {

/// The pages of the settings window, in their order.
enum class SettingsPane { general, vocabulary, history, permissions };

inline constexpr SettingsPane allSettingsPanes[] = {
    SettingsPane::general,
    SettingsPane::vocabulary,
    SettingsPane::history,
    SettingsPane::permissions,
};

/// What the page is called, in the sidebar and above it.
[[nodiscard]] QString title(SettingsPane pane);

/// Says which page of the settings window is shown. One per process.
///
/// Thread: main thread only.
class SettingsNavigator : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] SettingsPane pane() const { return pane_; }
    /// Notifies only when the page really changes.
    void setPane(SettingsPane pane);

Q_SIGNALS:
    void paneChanged();

private:
    SettingsPane pane_ = SettingsPane::general;
};

} // namespace corvandi
