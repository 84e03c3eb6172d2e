#include "settings_ui/app_chooser.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace corvandi {
namespace {

constexpr QSize startSize(380, 420);
constexpr int spacing = 12;
constexpr QMargins margins(kit::metrics::paneMargin, kit::metrics::paneMargin, kit::metrics::paneMargin,
                           kit::metrics::paneMargin);

QString translated(const char* text)
{
    return QCoreApplication::translate("AppChooser", text);
}

} // namespace

AppChooser::AppChooser(const AppCatalog& catalog, Picked picked, QWidget* parent)
    : QDialog(parent)
    , apps_(catalog.installedApps())
    , picked_(std::move(picked))
    , search_(kit::makeChild<kit::TextField>(*this, Symbol::magnifyingglass))
    , list_(kit::makeChild<QListWidget>(*this))
    , choose_(kit::makeChild<kit::Button>(*this, translated(QT_TRANSLATE_NOOP("AppChooser", "Choose")),
                                          kit::ButtonRole::prominent))
{
    setWindowTitle(translated(QT_TRANSLATE_NOOP("AppChooser", "Choose an App")));
    search_.setPlaceholder(translated(QT_TRANSLATE_NOOP("AppChooser", "Search")));
    list_.setAccessibleName(translated(QT_TRANSLATE_NOOP("AppChooser", "Installed apps")));
    for (const AppInfo& app : apps_)
        list_.addItem(app.name);
    auto& cancel = kit::makeChild<kit::Button>(*this, translated(QT_TRANSLATE_NOOP("AppChooser", "Cancel")),
                                               kit::ButtonRole::standard);
    choose_.setDefault(true);
    auto& column = kit::makeLayout<QVBoxLayout>(*this, margins, spacing);
    column.addWidget(&search_);
    column.addWidget(&list_, 1);
    auto& line = kit::makeInnerLayout<QHBoxLayout>(spacing);
    line.addStretch(1);
    line.addWidget(&cancel);
    line.addWidget(&choose_);
    column.addLayout(&line);
    connect(&search_, &QLineEdit::textChanged, this, &AppChooser::narrowDown);
    connect(&list_, &QListWidget::itemSelectionChanged, this, &AppChooser::showState);
    connect(&list_, &QListWidget::itemDoubleClicked, this, &AppChooser::pick);
    connect(&choose_, &QPushButton::clicked, this, &AppChooser::pick);
    connect(&cancel, &QPushButton::clicked, this, &QDialog::reject);
    resize(startSize);
    showState();
}

void AppChooser::open(const AppCatalog& catalog, QWidget& parent, Picked picked)
{
    auto& chooser = kit::makeChild<AppChooser>(parent, catalog, std::move(picked));
    chooser.setAttribute(Qt::WA_DeleteOnClose);
    static_cast<QDialog&>(chooser).open();
}

void AppChooser::narrowDown(const QString& part)
{
    for (int row = 0; row < list_.count(); ++row) {
        QListWidgetItem& item = *list_.item(row);
        item.setHidden(!item.text().contains(part, Qt::CaseInsensitive));
        if (item.isHidden())
            item.setSelected(false);
    }
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
