#include "hud_view/hud_view.h"

#include "hud_view/capsule_shadow.h"
#include "hud_view/hud_symbols.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// Thirty frames in a second are smooth for things as small as these.
constexpr auto frameInterval = 33ms;
constexpr int fontSize = 12;

QFont hudFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(fontSize);
    font.setWeight(QFont::Medium);
    return font;
}

qreal capsuleRadius(const QRectF& capsule)
{
    return qMin(capsule.width(), capsule.height()) / 2;
}

/// Draws `text` with a cell of the same width for every digit.
void drawSteadily(QPainter& painter, const QRectF& frame, const QString& text)
{
    const QFontMetricsF font(painter.font());
    const qreal baseline = frame.top() + font.ascent();
    qreal x = frame.left();
    for (const QChar character : text) {
        const qreal width = font.horizontalAdvance(character);
        const qreal cell = character.isDigit() ? digitCell(font) : width;
        painter.drawText(QPointF(x + (cell - width) / 2, baseline), character);
        x += cell;
    }
}

} // namespace

HudView::HudView(HUDModel& model, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , shownState_(model.state())
{
    setFont(hudFont());
    setFocusPolicy(Qt::NoFocus);
    symbolAge_.start();
    frames_.setInterval(frameInterval);
    connect(&frames_, &QTimer::timeout, this, [this] { update(layout_.symbol.toAlignedRect()); });
    connect(&model_, &HUDModel::changed, this, &HudView::refresh);
    refresh();
}

void HudView::setBackdrop(HudBackdrop backdrop)
{
    if (backdrop_ == backdrop)
        return;
    backdrop_ = backdrop;
    update();
}

QRegion HudView::pillRegion() const
{
    const QRect pill = layout_.pill.toRect();
    const int diameter = qMin(pill.width(), pill.height());
    const QRect left(pill.topLeft(), QSize(diameter, diameter));
    const QRect right = left.translated(pill.width() - diameter, 0);
    const QRect middle(left.center().x(), pill.top(), pill.width() - diameter, pill.height());
    return QRegion(left, QRegion::Ellipse) + QRegion(right, QRegion::Ellipse) + middle;
}

void HudView::refresh()
{
    const QRectF area = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    HudLayout layout = layOut(model_, QFontMetricsF(font()), area);
    const bool isMoved = layout.pill != layout_.pill;
    layout_ = std::move(layout);
    if (shownState_ != model_.state()) {
        shownState_ = model_.state();
        symbolAge_.start();
    }
    animateIfNeeded();
    if (isMoved) {
        update();
        Q_EMIT pillChanged();
    } else {
        update(layout_.pill.toAlignedRect());
    }
}

void HudView::animateIfNeeded()
{
    const bool isMoving = shownState_ == HUDState::recording || shownState_ == HUDState::processing;
    if (!isVisible() || !isMoving)
        frames_.stop();
    else if (!frames_.isActive())
        frames_.start();
}

void HudView::paintEvent(QPaintEvent* event)
{
    const HudColors colors = HudColors::from(palette(), backdrop_);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (backdrop_ == HudBackdrop::translucent)
        painter.drawImage(QPoint(), shadow());
    else
        painter.fillRect(event->rect(), colors.fill);
    paintPill(painter, colors);
    paintSymbol(painter, colors);
    paintText(painter, colors);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.accent);
    for (const QRectF& bar : layout_.bars)
        painter.drawRoundedRect(bar, capsuleRadius(bar), capsuleRadius(bar));
}

void HudView::paintPill(QPainter& painter, const HudColors& colors)
{
    const bool isTranslucent = backdrop_ == HudBackdrop::translucent;
    if (isTranslucent) {
        // The shadow must not darken the glass from below.
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.fill);
        painter.drawRoundedRect(layout_.pill, capsuleRadius(layout_.pill), capsuleRadius(layout_.pill));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    // Cut out, the capsule has steps instead of a soft outline: a wider edge reaches over them.
    const qreal inset = isTranslucent ? 0.5 : 0;
    const QRectF outline = layout_.pill.adjusted(inset, inset, -inset, -inset);
    painter.setPen(QPen(colors.edge, isTranslucent ? 1 : 3));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outline, capsuleRadius(outline), capsuleRadius(outline));
}

void HudView::paintSymbol(QPainter& painter, const HudColors& colors) const
{
    const SymbolAge age(symbolAge_.elapsed());
    switch (shownState_) {
    case HUDState::recording:
        return drawRecordingDot(painter, layout_.symbol, colors.recording, age);
    case HUDState::processing:
        return drawSpinner(painter, layout_.symbol, colors.secondary, age);
    case HUDState::notice:
        return drawCheckmark(painter, layout_.symbol, colors.notice, colors.onSymbol);
    case HUDState::error:
        return drawExclamationMark(painter, layout_.symbol, colors.error, colors.onSymbol);
    }
}

void HudView::paintText(QPainter& painter, const HudColors& colors) const
{
    painter.setFont(font());
    const bool isMessage = shownState_ == HUDState::notice || shownState_ == HUDState::error;
    painter.setPen(isMessage ? colors.primary : colors.secondary);
    if (shownState_ == HUDState::recording)
        return drawSteadily(painter, layout_.text, model_.elapsed());
    const QString line = QFontMetricsF(font()).elidedText(singleLine(model_.statusText()), Qt::ElideRight,
                                                          layout_.text.width());
    painter.drawText(layout_.text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
}

const QImage& HudView::shadow()
{
    const QSizeF needed = QSizeF(size()) * devicePixelRatioF();
    if (shadowCaster_ != layout_.pill || shadow_.size() != needed.toSize()) {
        shadow_ = drawShadow(CapsuleShadow{}, layout_.pill, size(), devicePixelRatioF());
        shadowCaster_ = layout_.pill;
    }
    return shadow_;
}

void HudView::resizeEvent(QResizeEvent*)
{
    refresh();
}

void HudView::showEvent(QShowEvent*)
{
    symbolAge_.start();
    animateIfNeeded();
}

void HudView::hideEvent(QHideEvent*)
{
    frames_.stop();
}

void HudView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        refresh();
    else if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace corvandi
