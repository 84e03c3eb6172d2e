#include "views/settings/settings_view.h"

#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/symbols/symbol.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace corvandi {
namespace {

constexpr int rowHeight = 36;
constexpr int rowGap = 2;
constexpr int margin = 10;
constexpr int padding = 10;
constexpr int symbolSize = 18;
constexpr int symbolGap = 10;
constexpr qreal radius = 7;

constexpr int symbolRole = Qt::UserRole + 1;

Symbol symbolOf(SettingsPane pane)
{
    switch (pane) {
    case SettingsPane::general:
        return Symbol::gearshape;
    case SettingsPane::vocabulary:
        return Symbol::characterBookClosed;
    case SettingsPane::history:
        return Symbol::clock;
    case SettingsPane::permissions:
        return Symbol::lockShield;
    }
    return Symbol::gearshape;
}

/// Draws a page's row: on a tint of the accent colour while it is the one that is shown.
class RowDelegate : public QStyledItemDelegate {
public:
    explicit RowDelegate(const QListWidget& list)
        : list_(list)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, qMax(rowHeight, QFontMetrics(option.font).height() + 14) + rowGap};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const kit::Colors colors = kit::Colors::of(list_);
        const QRect row = option.rect.adjusted(0, 0, 0, -rowGap);
        const bool isSelected = option.state & QStyle::State_Selected;
        if (isSelected)
            kit::paintPanel(*painter, row, radius, kit::mixed(colors.window, colors.accent, 0.24F));
        else if (option.state & QStyle::State_MouseOver)
            kit::paintPanel(*painter, row, radius, colors.hover);

        const QRect symbol(row.left() + padding, row.center().y() - symbolSize / 2 + 1, symbolSize,
                           symbolSize);
        const auto drawn = static_cast<Symbol>(index.data(symbolRole).toInt());
        painter->drawPixmap(symbol, symbolPixmap(drawn, symbol.size(),
                                                 isSelected ? colors.text : colors.secondaryText,
                                                 painter->device()->devicePixelRatioF()));
        painter->setFont(kit::scaledFont(option.font, 1, isSelected ? QFont::Medium : QFont::Normal));
        painter->setPen(colors.text);
        const QRect place(symbol.right() + 1 + symbolGap, row.top(),
                          row.right() - symbol.right() - symbolGap - padding, row.height());
        painter->drawText(
            place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
            painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, place.width()));
        if (isSelected && kit::showsFocus(list_))
            kit::paintFocusRing(*painter, row, radius, colors.accent);
    }

private:
    const QListWidget& list_;
};

} // namespace

Sidebar::Sidebar(SettingsNavigator& navigator, QWidget* parent)
    : QListWidget(parent)
{
    setFixedWidth(fixedWidth);
    setFrameShape(QFrame::NoFrame);
    setViewportMargins(margin, margin + 4, margin, margin);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setMouseTracking(true);
    setTabKeyNavigation(false);
    viewport()->setAutoFillBackground(false);
    auto delegate = std::make_unique<RowDelegate>(*this);
    delegate->setParent(this);
    setItemDelegate(delegate.release());
    setAccessibleName(QCoreApplication::translate("SettingsView", "Settings pages"));
    for (const SettingsPane pane : allSettingsPanes) {
        auto item = std::make_unique<QListWidgetItem>(title(pane));
        item->setData(symbolRole, static_cast<int>(symbolOf(pane)));
        addItem(item.release());
    }
    select(navigator.pane());
    connect(this, &QListWidget::currentRowChanged, &navigator, [&navigator](int row) {
        if (row >= 0)
            navigator.setPane(allSettingsPanes[row]);
    });
    connect(&navigator, &SettingsNavigator::paneChanged, this,
            [this, &navigator] { select(navigator.pane()); });
}

void Sidebar::select(SettingsPane pane)
{
    setCurrentRow(static_cast<int>(pane));
}

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
