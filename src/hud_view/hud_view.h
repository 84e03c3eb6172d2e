#pragma once

#include "hud_view/hud_animation.h"
#include "hud_view/hud_background.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace corvandi {

/// Draws a HUD model: a capsule in the middle of the view, as large as its content, with a face for
/// each state. Has no actions.
///
/// Whoever places the view keeps a margin for the shadow on every side of what it `needs`. The view
/// animates at sixty frames a second while it is visible and something moves: while it records or
/// processes, and while a change of state is under way. Otherwise no timer runs.
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
    /// How wide the capsule may become for a long message, in points; as wide as the view by default.
    void setWidestPill(qreal width);
    /// The width that the capsule needs now and until the change under way is over, in points.
    [[nodiscard]] qreal neededWidth() const;
    /// The capsule in the view's coordinates, as it is now.
    [[nodiscard]] QRectF pill() const;
    [[nodiscard]] QRegion pillRegion() const;

Q_SIGNALS:
    /// The capsule has another size, or needs another width than before.
    void pillChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] AnimationTime now() const { return AnimationTime(clock_.nsecsElapsed()); }
    [[nodiscard]] QPointF middle() const { return QRectF(rect()).center(); }
    [[nodiscard]] HudLayout layOutFace(const HudFace& face) const;
    /// Goes over to what the model shows now; at once when nobody looks.
    void refresh();
    void appear();
    void advance();
    void animateIfNeeded();
    void noticePill();
    /// Where things move while no change is under way.
    [[nodiscard]] QRect movingArea() const;

    HUDModel& model_;
    HudBackdrop backdrop_ = HudBackdrop::translucent;
    std::optional<qreal> widestPill_;
    QElapsedTimer clock_;
    HudAnimation animation_;
    HudBackground background_;
    /// What was last told by `pillChanged`.
    QSizeF toldPill_;
    qreal toldWidth_ = 0;
    bool wasChanging_ = false;
    QTimer frames_{this};
};

} // namespace corvandi
