#pragma once

#include "symbols/symbol.h"

#include <QWidget>

namespace corvandi::kit {

/// Says in the middle of its place that there is nothing to show, and why.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    EmptyState(Symbol symbol, const QString& title, const QString& description, QWidget* parent = nullptr);
};

} // namespace corvandi::kit
