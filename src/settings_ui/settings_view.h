#pragma once

#include "panes/settings_navigator.h"
#include "settings_ui/kit/text_label.h"

#include <QStackedWidget>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

namespace corvandi {

/// The content of the settings window: the list of pages, and beside it the page that is chosen, under its
/// title. A page is made when it is first shown.
///
/// The navigator outlives it.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    using MakePane = std::function<std::unique_ptr<QWidget>()>;

    /// What makes each page.
    struct Panes {
        MakePane general;
        MakePane vocabulary;
        MakePane history;
        MakePane permissions;
    };

    static constexpr QSize smallestSize{660, 460};

    SettingsView(SettingsNavigator& navigator, Panes panes, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showPane(SettingsPane pane);
    [[nodiscard]] const MakePane& factoryOf(SettingsPane pane) const;

    Panes factories_;
    std::array<QWidget*, std::size(allSettingsPanes)> made_{};
    kit::TextLabel& title_;
    QStackedWidget& stack_;
};

} // namespace corvandi
