#pragma once

#include "views/symbols/symbol.h"

#include <QAbstractButton>
#include <QPushButton>

namespace corvandi::kit {

enum class ButtonRole {
    standard,
    /// The one that the window is for: filled.
    prominent,
    /// Cannot be undone: its text in the colour of failures.
    destructive,
};

/// A push button with a text. An ampersand in it is shown as it is; there are no mnemonics. Return presses
/// the button while it has the focus, as Space does.
class Button : public QPushButton {
    Q_OBJECT

public:
    explicit Button(const QString& text, ButtonRole role = ButtonRole::standard, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    ButtonRole role_;
};

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
