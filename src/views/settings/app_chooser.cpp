#include "views/settings/app_chooser.h"

#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/kit/controls.h"
#include "views/kit/style.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

#include <utility>

namespace corvandi {
namespace {

/// As a picture of this very size: the icons of some themes are drawn anew each time that they are used.
QIcon drawn(const QIcon& icon, int points, qreal scale)
{
    const QPixmap picture = icon.pixmap(QSize(points, points), scale);
    return picture.isNull() ? QIcon() : QIcon(picture);
}

/// A plain tile, which is no particular application's.
QIcon tile(int points, qreal scale)
{
    QPixmap picture(QSize(points, points) * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    const kit::Colors colors = kit::Colors::of(QGuiApplication::palette());
    const qreal inset = points / 12.0;
    QPainter painter(&picture);
    kit::paintPanel(painter, QRectF(inset, inset, points - 2 * inset, points - 2 * inset), points / 5.0,
                    kit::mixed(colors.card, colors.text, 0.12F), kit::mixed(colors.card, colors.text, 0.3F));
    return {picture};
}

} // namespace

AppIcons::AppIcons(const AppCatalog& catalog, int points, qreal scale, QObject* parent)
    : QObject(parent)
    , catalog_(catalog)
    , points_(points)
    , scale_(scale)
    , generic_(tile(points, scale))
{
    nextTurn_.setSingleShot(true);
    connect(&nextTurn_, &QTimer::timeout, this, &AppIcons::loadNext);
}

QIcon AppIcons::icon(const QString& bundleID)
{
    const auto known = icons_.constFind(bundleID);
    if (known != icons_.constEnd())
        return *known;
    icons_.insert(bundleID, generic_);
    wanted_.push_back(bundleID);
    nextTurn_.start();
    return generic_;
}

void AppIcons::loadNext()
{
    const QString bundleID = wanted_.front();
    wanted_.pop_front();
    if (!wanted_.empty())
        nextTurn_.start();
    const QIcon own = load(catalog_.icon(bundleID));
    if (own.isNull())
        return;
    icons_.insert(bundleID, own);
    Q_EMIT loaded(bundleID);
}

QIcon AppIcons::load(const QString& nameOrPath) const
{
    return drawn(QDir::isAbsolutePath(nameOrPath) ? QIcon(nameOrPath) : QIcon::fromTheme(nameOrPath), points_,
                 scale_);
}

namespace {

constexpr int rowHeight = 38;
/// Between the rows' tints and the edges of the list.
constexpr int inset = 4;
constexpr int padding = 8;
constexpr int iconGap = 10;
constexpr qreal radius = 6;
constexpr float tintShare = 0.24F;

} // namespace

AppListDelegate::AppListDelegate(AppIcons& icons, const QListWidget& list, QObject* parent)
    : QStyledItemDelegate(parent)
    , icons_(icons)
    , list_(list)
{
}

QSize AppListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {0, qMax(rowHeight, QFontMetrics(option.font).height() + 14)};
}

void AppListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const kit::Colors colors = kit::Colors::of(list_);
    const QRect row = option.rect.adjusted(inset, 1, -inset, -1);
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isSelected)
        kit::paintPanel(*painter, row, radius, kit::mixed(colors.card, colors.accent, tintShare));
    else if (option.state & QStyle::State_MouseOver)
        kit::paintPanel(*painter, row, radius, colors.hover);

    const QRect icon(row.left() + padding, row.top() + (row.height() - iconSize) / 2, iconSize, iconSize);
    icons_.icon(index.data(bundleIDRole).toString()).paint(painter, icon);
    const QRect place(icon.right() + 1 + iconGap, row.top(), row.right() - icon.right() - iconGap - padding,
                      row.height());
    painter->setFont(option.font);
    painter->setPen(colors.text);
    painter->drawText(
        place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, place.width()));
    // When the list gets the focus without a choice, it makes a row the current one and selects none.
    if (index == list_.currentIndex() && kit::showsFocus(list_))
        kit::paintFocusRing(*painter, row, radius, colors.accent);
}

namespace {

constexpr QSize startSize(400, 460);
constexpr int spacing = 12;
constexpr int margin = 20;
/// Above the first row and below the last one.
constexpr int listPadding = 4;

QString translated(const char* text)
{
    return QCoreApplication::translate("AppChooser", text);
}

} // namespace

AppChooser::AppChooser(const AppCatalog& catalog, Picked picked, QWidget* parent)
    : QDialog(parent)
    , apps_(catalog.installedApps())
    , picked_(std::move(picked))
    , icons_(catalog, AppListDelegate::iconSize, devicePixelRatioF())
    , search_(kit::makeChild<kit::TextField>(*this, Symbol::magnifyingglass))
    , list_(kit::makeChild<QListWidget>(*this))
    , noMatches_(kit::makeChild<kit::TextLabel>(
          list_, translated(QT_TRANSLATE_NOOP("AppChooser", "No Matches")), kit::TextStyle::secondary))
    , choose_(kit::makeChild<kit::Button>(*this, translated(QT_TRANSLATE_NOOP("AppChooser", "Choose")),
                                          kit::ButtonRole::prominent))
{
    setWindowTitle(translated(QT_TRANSLATE_NOOP("AppChooser", "Choose an App")));
    search_.setPlaceholder(translated(QT_TRANSLATE_NOOP("AppChooser", "Search")));
    search_.installEventFilter(this);
    addList();
    auto& column = kit::makeLayout<QVBoxLayout>(*this, {margin, margin, margin, margin}, spacing);
    auto& card = kit::makeChild<kit::Card>(*this);
    auto& place = kit::makeChild<QWidget>(card);
    kit::makeLayout<QVBoxLayout>(place, {0, listPadding, 0, listPadding}).addWidget(&list_);
    card.addRow(place);
    card.setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    column.addWidget(&search_);
    column.addWidget(&card, 1);
    addButtons(column);
    connect(&search_, &QLineEdit::textChanged, this, &AppChooser::narrowDown);
    resize(startSize);
    narrowDown({});
    search_.setFocus();
}

void AppChooser::addList()
{
    list_.setAccessibleName(translated(QT_TRANSLATE_NOOP("AppChooser", "Installed apps")));
    list_.setItemDelegate(&kit::makeChild<AppListDelegate>(list_, icons_, list_));
    list_.setFrameShape(QFrame::NoFrame);
    list_.viewport()->setAutoFillBackground(false);
    list_.setVerticalScrollBar(&kit::makeChild<kit::ScrollBar>(list_));
    list_.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_.setMouseTracking(true);
    list_.setUniformItemSizes(true);
    for (const AppInfo& app : apps_) {
        auto item = std::make_unique<QListWidgetItem>(app.name);
        item->setData(AppListDelegate::bundleIDRole, app.bundleID);
        list_.addItem(item.release());
    }
    auto& place = kit::makeLayout<QVBoxLayout>(list_);
    noMatches_.setAlignment(Qt::AlignCenter);
    place.addWidget(&noMatches_);
    connect(&list_, &QListWidget::itemSelectionChanged, this, &AppChooser::showState);
    connect(&list_, &QListWidget::itemDoubleClicked, this, &AppChooser::pick);
    connect(&icons_, &AppIcons::loaded, &list_, [this] { list_.viewport()->update(); });
}

void AppChooser::addButtons(QBoxLayout& column)
{
    auto& cancel = kit::makeChild<kit::Button>(*this, translated(QT_TRANSLATE_NOOP("AppChooser", "Cancel")),
                                               kit::ButtonRole::standard);
    choose_.setDefault(true);
    auto& line = kit::makeInnerLayout<QHBoxLayout>(spacing);
    line.addStretch(1);
    line.addWidget(&cancel);
    line.addWidget(&choose_);
    column.addLayout(&line);
    // What is reached by Tab before what is done with it.
    setTabOrder(&list_, &cancel);
    setTabOrder(&cancel, &choose_);
    connect(&choose_, &QPushButton::clicked, this, &AppChooser::pick);
    connect(&cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void AppChooser::open(const AppCatalog& catalog, QWidget& parent, Picked picked)
{
    auto& chooser = kit::makeChild<AppChooser>(parent, catalog, std::move(picked));
    chooser.setAttribute(Qt::WA_DeleteOnClose);
    static_cast<QDialog&>(chooser).open();
}

bool AppChooser::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    switch (static_cast<const QKeyEvent*>(event)->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QCoreApplication::sendEvent(&list_, event);
        return true;
    default:
        return false;
    }
}

void AppChooser::narrowDown(const QString& part)
{
    QListWidgetItem* first = nullptr;
    for (int row = 0; row < list_.count(); ++row) {
        QListWidgetItem& item = *list_.item(row);
        item.setHidden(!item.text().contains(part, Qt::CaseInsensitive));
        if (!item.isHidden() && !first)
            first = &item;
    }
    noMatches_.setVisible(!first);
    const QListWidgetItem* current = list_.currentItem();
    if (!first)
        select(nullptr);
    else if (!part.isEmpty() && (!current || current->isHidden() || !current->isSelected()))
        select(first);
    showState();
}

void AppChooser::select(QListWidgetItem* item)
{
    list_.setCurrentItem(item);
    if (item)
        list_.scrollToItem(item);
    else
        list_.clearSelection();
}

void AppChooser::showState()
{
    choose_.setEnabled(!list_.selectedItems().isEmpty());
}

void AppChooser::pick()
{
    const auto selected = list_.selectedItems();
    if (selected.isEmpty())
        return;
    const AppInfo app = apps_.at(static_cast<size_t>(list_.row(selected.first())));
    accept();
    picked_(app);
}

} // namespace corvandi
