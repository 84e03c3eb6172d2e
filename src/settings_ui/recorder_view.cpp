#include "settings_ui/recorder_view.h"

#include "platform/key_codes.h"
#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

namespace corvandi {
namespace {

constexpr qreal radius = 6;
constexpr int fontSize = 12;
constexpr int padding = 14;
constexpr int narrowest = 120;
constexpr int lowest = 28;

QString prompt()
{
    return QCoreApplication::translate("HotkeyRecorder", "Press keys…");
}

uint64_t flagsOf(Qt::KeyboardModifiers held)
{
    uint64_t flags = 0;
    flags |= held & Qt::MetaModifier ? modifier_flags::command : 0;
    flags |= held & Qt::AltModifier ? modifier_flags::option : 0;
    flags |= held & Qt::ShiftModifier ? modifier_flags::shift : 0;
    flags |= held & Qt::ControlModifier ? modifier_flags::control : 0;
    return flags;
}

} // namespace

RecorderView::RecorderView(HotkeyRecorder& recorder, QWidget* parent)
    : QAbstractButton(parent)
    , recorder_(recorder)
{
    QFont labelFont = font();
    labelFont.setPixelSize(fontSize);
    labelFont.setWeight(QFont::Medium);
    setFont(labelFont);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] {
        setFocus(Qt::MouseFocusReason);
        recorder_.beginRecording();
    });
    connect(&recorder_, &HotkeyRecorder::changed, this, &RecorderView::showLabel);
    recorder_.refresh();
    showLabel();
}

RecorderView::~RecorderView()
{
    recorder_.focusLost();
}

void RecorderView::showLabel()
{
    // The name says what it is, this what it holds.
    setAccessibleDescription(recorder_.label());
    updateGeometry();
    update();
}

QSize RecorderView::sizeHint() const
{
    const QFontMetrics metrics(font());
    // As wide as the prompt at least, so that arming moves nothing.
    const int text = qMax(metrics.horizontalAdvance(recorder_.label()), metrics.horizontalAdvance(prompt()));
    return {qMax(narrowest, text + 2 * padding), qMax(lowest, metrics.height() + 10)};
}

void RecorderView::paintEvent(QPaintEvent*)
{
    const kit::Colors colors = kit::Colors::of(*this);
    QPainter painter(this);
    const QRectF frame(rect());
    const bool isArmed = recorder_.isRecording();
    kit::paintPanel(painter, frame, radius, colors.control, isArmed ? colors.accent : colors.controlEdge);
    if (isDown() || underMouse())
        kit::paintPanel(painter, frame, radius, isDown() ? colors.pressed : colors.hover);
    if (isArmed || kit::showsFocus(*this))
        kit::paintFocusRing(painter, frame, radius, colors.accent);
    painter.setPen(isArmed ? colors.secondaryText : colors.text);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, recorder_.label());
}

bool RecorderView::event(QEvent* event)
{
    if (recorder_.isRecording()) {
        // Before the window looks for shortcuts, and before Tab moves the focus.
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        if (event->type() == QEvent::KeyPress) {
            keyPressEvent(static_cast<QKeyEvent*>(event));
            return true;
        }
    }
    return QAbstractButton::event(event);
}

void RecorderView::keyPressEvent(QKeyEvent* event)
{
    if (!recorder_.isRecording())
        return QAbstractButton::keyPressEvent(event);
    if (!event->isAutoRepeat())
        (void)recorder_.nativeKeyDown(event->nativeScanCode(), flagsOf(event->modifiers()));
    event->accept();
}

void RecorderView::focusInEvent(QFocusEvent* event)
{
    QAbstractButton::focusInEvent(event);
    recorder_.focusGained();
}

void RecorderView::focusOutEvent(QFocusEvent* event)
{
    QAbstractButton::focusOutEvent(event);
    recorder_.focusLost();
}

void RecorderView::hideEvent(QHideEvent* event)
{
    QAbstractButton::hideEvent(event);
    recorder_.focusLost();
}

} // namespace corvandi
