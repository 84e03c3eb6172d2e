#pragma once

#include <QComboBox>

namespace corvandi::kit {

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

} // namespace corvandi::kit
