#pragma once

#include "views/symbols/symbol.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QVariantAnimation>

#include <optional>

namespace corvandi::kit {

/// A slim scroll bar: a rounded handle on no ground. Give it to a scroll area with `setVerticalScrollBar`.
class ScrollBar : public QScrollBar {
    Q_OBJECT

public:
    explicit ScrollBar(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// An on/off switch: a check box whose knob glides. Space and clicks turn it. Give it an accessible name;
/// it shows no text.
class Switch : public QAbstractButton {
    Q_OBJECT

public:
    explicit Switch(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
    /// Where the knob is: 0 off, 1 on, between them while it glides.
    [[nodiscard]] qreal knobPosition() const { return position_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void glide(bool isOn);

    qreal position_ = 0;
    QVariantAnimation animation_;
};

/// A combo box in the look of the other controls: what is chosen, and a chevron. It grows with its widest
/// choice. Give it an accessible name. The wheel only turns it while it has the focus: else it would
/// change things while somebody scrolls past.
class PopUpButton : public QComboBox {
    Q_OBJECT

public:
    explicit PopUpButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

/// A line edit in the look of the other controls, with a symbol before the text if one is given (such as
/// the magnifying glass of a search field). Give it an accessible name, or a placeholder, which is its
/// name else.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    explicit TextField(std::optional<Symbol> symbol = {}, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    /// No narrower than the placeholder.
    [[nodiscard]] QSize minimumSizeHint() const override;
    void setPlaceholder(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<Symbol> symbol_;
};

} // namespace corvandi::kit
