#pragma once

#include "settings_ui/general_pane_view.h"
#include "settings_ui/kit/empty_state.h"
#include "settings_ui/permissions_pane_view.h"
#include "settings_ui/settings_view.h"
#include "settings_ui/welcome_view.h"
#include "support/event_loop.h"
#include "support/settings_parts.h"

#include <QAbstractButton>
#include <QtTest/QTest>

#include <gmock/gmock.h>

namespace corvandi::testing {

/// The one widget of this kind that is called so; the test fails without it.
template<class T = QWidget>
[[nodiscard]] T& named(const QWidget& window, const QString& name)
{
    for (T* widget : window.findChildren<T*>()) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        if (widget->accessibleName() == name || (button && button->text() == name))
            return *widget;
    }
    throw std::runtime_error("there is no " + name.toStdString());
}

/// Whether a label with this text can be seen.
[[nodiscard]] inline bool shows(const QWidget& window, const QString& text)
{
    const auto labels = window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
}

[[nodiscard]] inline bool isShown(QWidget& window)
{
    window.show();
    window.activateWindow();
    return waitUntil([&] { return window.isActiveWindow(); });
}

/// The views on facilities that the test sets.
class SettingsFixture : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<SettingsView> makeSettings()
    {
        return std::make_unique<SettingsView>(
            parts.navigator,
            SettingsView::Panes{
                .general =
                    [this] { return std::make_unique<GeneralPaneView>(parts.general, parts.recorder); },
                .vocabulary =
                    [this] {
                        ++vocabularyPanes;
                        return std::make_unique<kit::EmptyState>(
                            Symbol::characterBookClosed, QStringLiteral("No replacements"),
                            QStringLiteral("Words that are put right after every dictation show here."));
                    },
                .history = [] { return std::make_unique<QWidget>(); },
                .permissions =
                    [this] { return std::make_unique<PermissionsPaneView>(parts.permissionsPane); },
            });
    }

    SettingsParts parts;
    int vocabularyPanes = 0;
};

} // namespace corvandi::testing
