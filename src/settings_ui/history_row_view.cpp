#include "settings_ui/history_row_view.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/icon_button.h"
#include "settings_ui/kit/metrics.h"

#include <QCoreApplication>
#include <QHBoxLayout>

namespace corvandi {
namespace {

constexpr QMargins margins(kit::metrics::rowMargin, kit::metrics::rowPadding, kit::metrics::rowPadding,
                           kit::metrics::rowPadding);
constexpr int spacing = 4;

} // namespace

HistoryRowView::HistoryRowView(QWidget* parent)
    : QWidget(parent)
    , text_(kit::makeChild<kit::TextLabel>(*this, QString(), kit::TextStyle::body))
{
    text_.setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto& copy = kit::makeChild<kit::IconButton>(*this, Symbol::docOnDoc,
                                                 QCoreApplication::translate("HistoryPane", "Copy"),
                                                 kit::IconButtonRole::standard);
    auto& trash = kit::makeChild<kit::IconButton>(*this, Symbol::trash,
                                                  QCoreApplication::translate("HistoryPane", "Delete"),
                                                  kit::IconButtonRole::destructive);
    auto& line = kit::makeLayout<QHBoxLayout>(*this, margins, spacing);
    line.addWidget(&text_, 1);
    line.addWidget(&copy, 0, Qt::AlignTop);
    line.addWidget(&trash, 0, Qt::AlignTop);
    connect(&copy, &QAbstractButton::clicked, this, &HistoryRowView::copyRequested);
    connect(&trash, &QAbstractButton::clicked, this, &HistoryRowView::deleteRequested);
}

void HistoryRowView::setEntry(const HistoryEntry& entry)
{
    if (entry == entry_)
        return;
    entry_ = entry;
    text_.setText(entry_.text);
}

} // namespace corvandi
