#pragma once

#include "panes/hotkey_recorder.h"

#include <QAbstractButton>

namespace corvandi {

/// The small round box that shows the hotkey. A click, or Space, arms it; then it shows a prompt until it
/// gets a key.
///
/// The recorder outlives it.
class RecorderView : public QAbstractButton {
    Q_OBJECT

public:
    explicit RecorderView(HotkeyRecorder& recorder, QWidget* parent = nullptr);
    ~RecorderView() override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showLabel();

    HotkeyRecorder& recorder_;
};

} // namespace corvandi
