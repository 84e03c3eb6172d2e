#pragma once

#include "symbols/symbol.h"

#include <QWidget>

namespace corvandi::kit {

enum class SymbolTint { text, secondary, accent, positive, destructive };

/// A symbol of a fixed size, for decoration: it is not read out.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    SymbolView(Symbol symbol, int points, SymbolTint tint = SymbolTint::text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return {points_, points_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol symbol_;
    int points_;
    SymbolTint tint_;
};

} // namespace corvandi::kit
