#include "views/hud/hud_view.h"

#include "views/hud/hud_painting.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// Sixty frames in a second.
constexpr auto frameInterval = 16ms;
constexpr int fontSize = 12;

QFont hudFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(fontSize);
    font.setWeight(QFont::Medium);
    return font;
}

QRectF around(const QPointF& middle, const QSizeF& size)
{
    return {middle.x() - size.width() / 2, middle.y() - size.height() / 2, size.width(), size.height()};
}

} // namespace

HUDView::HUDView(HUDModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
{
    setFont(hudFont());
    setFocusPolicy(Qt::NoFocus);
    clock_.start();
    frames_.setTimerType(Qt::PreciseTimer);
    frames_.setInterval(frameInterval);
    connect(&frames_, &QTimer::timeout, this, &HUDView::advance);
    connect(&model_, &HUDModel::changed, this, &HUDView::refresh);
    appear();
}

void HUDView::setBackdrop(HUDBackdrop backdrop)
{
    if (backdrop_ == backdrop)
        return;
    backdrop_ = backdrop;
    update();
}

void HUDView::setWidestPill(qreal width)
{
    if (widestPill_ == width)
        return;
    widestPill_ = width;
    refresh();
}

qreal HUDView::neededWidth() const
{
    return animation_.reachAt(now());
}

QRectF HUDView::pill() const
{
    return around(middle(), animation_.pillAt(now()));
}

QRegion HUDView::pillRegion() const
{
    return capsuleRegion(pill().toRect());
}

HUDLayout HUDView::layOutFace(const HUDFace& face) const
{
    return layOut(face, QFontMetricsF(font()), widestPill_.value_or(width() - 2 * shadowMargin));
}

void HUDView::refresh()
{
    if (!isVisible())
        return appear();
    HUDFace face = HUDFace::of(model_);
    HUDLayout layout = layOutFace(face);
    // The bars move from the next frame on; everything else shows at once.
    if (!face.differsInBarsOnly(animation_.face()))
        update(pill().toAlignedRect());
    animation_.moveTo(std::move(face), std::move(layout), now());
    animateIfNeeded();
    noticePill();
}

void HUDView::appear()
{
    HUDFace face = HUDFace::of(model_);
    HUDLayout layout = layOutFace(face);
    animation_.jumpTo(std::move(face), std::move(layout), now());
    update();
    noticePill();
}

void HUDView::advance()
{
    // A change that has come to its end since the last frame needs its last picture.
    const bool isChanging = animation_.isChanging(now());
    if (isChanging || wasChanging_)
        update();
    else
        update(movingArea());
    wasChanging_ = isChanging;
    animateIfNeeded();
    noticePill();
}

void HUDView::animateIfNeeded()
{
    if (!isVisible() || !animation_.isMoving(now()))
        frames_.stop();
    else if (!frames_.isActive())
        frames_.start();
}

void HUDView::noticePill()
{
    const QSizeF pill = animation_.pillAt(now());
    const qreal width = neededWidth();
    if (toldPill_ == pill && toldWidth_ == width)
        return;
    toldPill_ = pill;
    toldWidth_ = width;
    update();
    Q_EMIT pillChanged();
}

QRect HUDView::movingArea() const
{
    const HUDLayout& layout = animation_.layout();
    const QRectF moving = layout.symbol | layout.waveform;
    return moving.translated(middle()).toAlignedRect();
}

void HUDView::paintEvent(QPaintEvent* event)
{
    const HUDColors colors = HUDColors::from(palette(), backdrop_);
    const HUDScene scene = animation_.at(now());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawImage(QPoint(),
                      background_.picture({scene.pill, size(), devicePixelRatioF(), colors, backdrop_}));
    painter.translate(middle());
    if (scene.parts.size() > 1) {
        QPainterPath inside;
        const QRectF pill = around({}, scene.pill);
        inside.addRoundedRect(pill, capsuleRadius(pill), capsuleRadius(pill));
        painter.setClipPath(inside);
    }
    const QRectF dirty = QRectF(event->rect()).translated(-middle());
    for (const HUDPart& part : scene.parts)
        paintPart(painter, part, colors, dirty);
}

void HUDView::resizeEvent(QResizeEvent*)
{
    refresh();
    update();
}

void HUDView::showEvent(QShowEvent*)
{
    appear();
    animateIfNeeded();
}

void HUDView::hideEvent(QHideEvent*)
{
    frames_.stop();
}

void HUDView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        refresh();
    else if (event->type() == QEvent::PaletteChange)
        update();
}

void HUDView::whenPillChanges(std::function<void()> changed)
{
    connect(this, &HUDView::pillChanged, this, std::move(changed));
}

} // namespace corvandi
