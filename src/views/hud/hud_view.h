#pragma once

#include "ports/hud_content.h"
#include "views/hud/hud_animation.h"
#include "views/hud/hud_background.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace corvandi {

/// Draws a HUD model: a capsule in the middle of the view, as large as its content, with a face for
/// each state. Has no actions.
///
/// The view animates at sixty frames a second while it is visible and something moves: while it records or
/// processes, and while a change of state is under way. Otherwise no timer runs.
/// Thread: main thread only. The model outlives the view.
class HUDView : public QWidget, public HUDContent {
    Q_OBJECT

public:
    explicit HUDView(HUDModel& model, QWidget* parent = nullptr);

    [[nodiscard]] QWidget& widget() override { return *this; }
    void setBackdrop(HUDBackdrop backdrop) override;
    void setWidestPill(qreal width) override;
    [[nodiscard]] qreal neededWidth() const override;
    /// The capsule in the view's coordinates, as it is now.
    [[nodiscard]] QRectF pill() const;
    [[nodiscard]] QRegion pillRegion() const override;
    void whenPillChanges(std::function<void()> changed) override;

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
    [[nodiscard]] HUDLayout layOutFace(const HUDFace& face) const;
    /// Goes over to what the model shows now; at once when nobody looks.
    void refresh();
    void appear();
    void advance();
    void animateIfNeeded();
    void noticePill();
    /// Where things move while no change is under way.
    [[nodiscard]] QRect movingArea() const;

    HUDModel& model_;
    HUDBackdrop backdrop_ = HUDBackdrop::translucent;
    std::optional<qreal> widestPill_;
    QElapsedTimer clock_;
    HUDAnimation animation_;
    HUDBackground background_;
    /// What was last told by `pillChanged`.
    QSizeF toldPill_;
    qreal toldWidth_ = 0;
    bool wasChanging_ = false;
    QTimer frames_{this};
};

} // namespace corvandi
