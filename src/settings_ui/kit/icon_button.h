#pragma once

#include "symbols/symbol.h"

#include <QAbstractButton>

namespace corvandi::kit {

enum class IconButtonRole {
    standard,
    /// Its symbol turns to the colour of failures when the pointer is on it.
    destructive,
};

/// A borderless button that shows a symbol alone. Its name is read out and shown as its tool tip.
class IconButton : public QAbstractButton {
    Q_OBJECT

public:
    /// Its width and its height.
    static constexpr int side = 28;

    IconButton(Symbol symbol, const QString& name, IconButtonRole role = IconButtonRole::standard,
               QWidget* parent = nullptr);

    void setSymbol(Symbol symbol);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QColor symbolColor() const;

    Symbol symbol_;
    IconButtonRole role_;
};

} // namespace corvandi::kit
