#pragma once

#include "views/symbols/symbol.h"

#include <QVBoxLayout>
#include <QWidget>

namespace corvandi::kit {

/// A rounded panel that holds rows, with a hairline between each two that are visible. Rows belong to the
/// card; a row that is deleted leaves it.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Adds a row at the bottom. Rows bring their own margins.
    void addRow(QWidget& row) { insertRow(rowCount(), row); }
    void insertRow(int index, QWidget& row);
    [[nodiscard]] int rowCount() const { return layout_.count(); }
    [[nodiscard]] QWidget* row(int index) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout& layout_;
};

enum class SymbolTint { secondary, positive };

/// A symbol of a fixed size, for decoration: it is not read out.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    SymbolView(Symbol symbol, int points, SymbolTint tint, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override { return {points_, points_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol symbol_;
    int points_;
    SymbolTint tint_;
};

/// Says in the middle of its place that there is nothing to show, and why.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    EmptyState(Symbol symbol, const QString& title, const QString& description, QWidget* parent = nullptr);
};

} // namespace corvandi::kit
