#pragma once

#include "support/event_loop.h"
#include "support/settings_parts.h"
#include "views/kit/card.h"
#include "views/kit/selectable_text.h"
#include "views/kit/virtual_list.h"
#include "views/settings/general_pane_view.h"
#include "views/settings/permissions_pane_view.h"
#include "views/settings/settings_view.h"
#include "views/settings/welcome_view.h"

#include <QAbstractButton>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <algorithm>

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

/// Whether this text can be seen.
[[nodiscard]] inline bool shows(const QWidget& window, const QString& text)
{
    const auto isShown = [&](const auto* label) { return label->isVisible() && label->text() == text; };
    return std::ranges::any_of(window.findChildren<QLabel*>(), isShown) ||
           std::ranges::any_of(window.findChildren<kit::SelectableText*>(), isShown);
}

/// The rows of the window's list that exist, from the top. Those that can't be seen have gone, but for one.
template<class Row>
[[nodiscard]] std::vector<Row*> rowsOf(const QWidget& window)
{
    std::vector<Row*> rows;
    for (kit::ListRow* row : window.findChild<kit::VirtualList*>()->rows())
        rows.push_back(static_cast<Row*>(row));
    return rows;
}

/// The button of a row with this tool tip.
[[nodiscard]] inline QAbstractButton& buttonOf(const QWidget& row, const char* toolTip)
{
    for (auto* button : row.findChildren<QAbstractButton*>()) {
        if (button->toolTip() == QLatin1String(toolTip))
            return *button;
    }
    throw std::runtime_error("there is no such button");
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
