#include "settings_ui/settings_view.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/sidebar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace corvandi {
namespace {

constexpr int dividerWidth = 1;
constexpr QMargins titleMargins(kit::metrics::paneMargin + 2, 18, kit::metrics::paneMargin, 14);

} // namespace

SettingsView::SettingsView(SettingsNavigator& navigator, Panes panes, QWidget* parent)
    : QWidget(parent)
    , factories_(std::move(panes))
    , title_(kit::makeChild<kit::TextLabel>(*this, QString(), kit::TextStyle::title))
    , stack_(kit::makeChild<QStackedWidget>(*this))
{
    auto& line = kit::makeLayout<QHBoxLayout>(*this, {}, dividerWidth);
    auto& sidebar = kit::makeChild<Sidebar>(*this, navigator);
    line.addWidget(&sidebar);
    auto& column = kit::makeInnerLayout<QVBoxLayout>();
    line.addLayout(&column, 1);
    auto& head = kit::makeInnerLayout<QHBoxLayout>();
    head.setContentsMargins(titleMargins);
    head.addWidget(&title_);
    column.addLayout(&head);
    column.addWidget(&stack_, 1);
    setTabOrder(&sidebar, &stack_);
    connect(&navigator, &SettingsNavigator::paneChanged, this,
            [this, &navigator] { showPane(navigator.pane()); });
    showPane(navigator.pane());
    sidebar.setFocus();
}

QSize SettingsView::minimumSizeHint() const
{
    // Larger where the texts of a language need more.
    return QWidget::minimumSizeHint().expandedTo(smallestSize);
}

const SettingsView::MakePane& SettingsView::factoryOf(SettingsPane pane) const
{
    switch (pane) {
    case SettingsPane::general:
        return factories_.general;
    case SettingsPane::vocabulary:
        return factories_.vocabulary;
    case SettingsPane::history:
        return factories_.history;
    case SettingsPane::permissions:
        return factories_.permissions;
    }
    return factories_.general;
}

void SettingsView::showPane(SettingsPane pane)
{
    QWidget*& made = made_.at(static_cast<size_t>(pane));
    if (!made) {
        made = factoryOf(pane)().release();
        stack_.addWidget(made);
    }
    title_.setText(title(pane));
    stack_.setAccessibleName(title(pane));
    stack_.setCurrentWidget(made);
}

void SettingsView::paintEvent(QPaintEvent*)
{
    const kit::Colors colors = kit::Colors::of(*this);
    QPainter(this).fillRect(QRect(Sidebar::fixedWidth, 0, dividerWidth, height()), colors.hairline);
}

} // namespace corvandi
