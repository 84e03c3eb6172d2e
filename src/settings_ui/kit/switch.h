#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace corvandi::kit {

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

} // namespace corvandi::kit
