#pragma once

#include "settings_ui/app_icons.h"
#include "settings_ui/kit/button.h"
#include "settings_ui/kit/text_field.h"
#include "settings_ui/kit/text_label.h"
#include "storage/app_catalog.h"

#include <QBoxLayout>
#include <QDialog>
#include <QListWidget>

#include <functional>
#include <vector>

namespace corvandi {

/// Lets the user pick one of the installed applications, shown with their icons. Typing narrows the list
/// down and selects the first match; the arrow keys move in the list meanwhile. Nothing is picked when it
/// is closed in any other way than by its button, Return or a double click.
class AppChooser : public QDialog {
    Q_OBJECT

public:
    using Picked = std::function<void(const AppInfo&)>;

    AppChooser(const AppCatalog& catalog, Picked picked, QWidget* parent = nullptr);

    /// Opens one over `parent` that goes when it is closed. Does not wait for it.
    static void open(const AppCatalog& catalog, QWidget& parent, Picked picked);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addList();
    void addButtons(QBoxLayout& column);
    void narrowDown(const QString& part);
    void select(QListWidgetItem* item);
    void showState();
    void pick();

    std::vector<AppInfo> apps_;
    Picked picked_;
    AppIcons icons_;
    kit::TextField& search_;
    QListWidget& list_;
    kit::TextLabel& noMatches_;
    kit::Button& choose_;
};

} // namespace corvandi
