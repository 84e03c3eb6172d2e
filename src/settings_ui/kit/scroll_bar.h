#pragma once

#include <QScrollBar>

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

} // namespace corvandi::kit
