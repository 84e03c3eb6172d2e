#include "settings_ui/kit/empty_state.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/symbol_view.h"
#include "settings_ui/kit/text_label.h"

#include <QVBoxLayout>

namespace corvandi::kit {
namespace {

constexpr int symbolSize = 44;
constexpr int spacing = 6;
constexpr int symbolSpacing = 8;

} // namespace

EmptyState::EmptyState(Symbol symbol, const QString& title, const QString& description, QWidget* parent)
    : QWidget(parent)
{
    constexpr int margin = metrics::paneMargin;
    auto& column = makeLayout<QVBoxLayout>(*this, {margin, margin, margin, margin}, spacing);
    column.addStretch(1);
    column.addWidget(&makeChild<SymbolView>(*this, symbol, symbolSize, SymbolTint::secondary), 0,
                     Qt::AlignHCenter);
    column.addSpacing(symbolSpacing);
    for (auto [text, style] :
         {std::pair(title, TextStyle::title), std::pair(description, TextStyle::secondary)}) {
        if (text.isEmpty())
            continue;
        auto& label = makeChild<TextLabel>(*this, text, style);
        label.setAlignment(Qt::AlignCenter);
        column.addWidget(&label);
    }
    column.addStretch(1);
}

} // namespace corvandi::kit
