#pragma once

#include "hud_view/hud_colors.h"
#include "hud_view/hud_layout.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>
#include <QWidget>

namespace corvandi {

/// Draws a HUD model: a capsule in the middle of the view, as large as its content, with a face for
/// each state. Has no actions.
///
/// The view keeps a margin for the shadow on every side, in which the capsule never stands. It
/// animates while it is visible and has something that moves; otherwise it draws only what changes.
/// Thread: main thread only. The model outlives the view.
class HudView : public QWidget {
    Q_OBJECT

public:
    /// Room for the shadow on every side, in points.
    static constexpr int shadowMargin = 24;

    explicit HudView(HUDModel& model, QWidget* parent = nullptr);

    /// Against an opaque backdrop the view is the capsule's colour all over and casts no shadow: it has
    /// to be cut out along `pillRegion`.
    void setBackdrop(HudBackdrop backdrop);
    /// The capsule in the view's coordinates.
    [[nodiscard]] const QRectF& pill() const { return layout_.pill; }
    [[nodiscard]] QRegion pillRegion() const;

Q_SIGNALS:
    /// The capsule has another size or place.
    void pillChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void animateIfNeeded();
    void paintPill(QPainter& painter, const HudColors& colors);
    void paintSymbol(QPainter& painter, const HudColors& colors) const;
    void paintText(QPainter& painter, const HudColors& colors) const;
    [[nodiscard]] const QImage& shadow();

    HUDModel& model_;
    HudBackdrop backdrop_ = HudBackdrop::translucent;
    HudLayout layout_;
    HUDState shownState_;
    QImage shadow_;
    QRectF shadowCaster_;
    QElapsedTimer symbolAge_;
    QTimer frames_{this};
};

} // namespace corvandi
