#pragma once

#include "shell/panes/settings_navigator.h"
#include "views/kit/text_label.h"

#include <QListWidget>
#include <QStackedWidget>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

namespace corvandi {

/// The list of the pages; what is selected there and what the navigator says is always the same. Up and
/// Down move from page to page.
///
/// The navigator outlives it.
class Sidebar : public QListWidget {
    Q_OBJECT

public:
    /// Points; the same at every size of the window.
    static constexpr int fixedWidth = 215;

    explicit Sidebar(SettingsNavigator& navigator, QWidget* parent = nullptr);

private:
    void select(SettingsPane pane);
};

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
