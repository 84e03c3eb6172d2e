#include "settings_ui/app_chooser.h"

#include "settings_ui/app_list_delegate.h"
#include "settings_ui/kit/card.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/scroll_bar.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <utility>

namespace corvandi {
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
