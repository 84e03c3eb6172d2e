#include "views/settings/general_pane_view.h"

#include "ports/key_codes.h"
#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/settings/managed_widget_windows.h"

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

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("GeneralPane", text);
}

} // namespace

GeneralPaneView::GeneralPaneView(GeneralPane& pane, HotkeyRecorder& recorder, QWidget* parent)
    : GroupedForm(parent)
    , pane_(pane)
{
    addHotkey(recorder);
    addText();
    addGeneral();
    connect(&pane_, &GeneralPane::changed, this, &GeneralPaneView::showState);
    whenAppearing(*this, [this] { pane_.refresh(); });
    showState();
}

void GeneralPaneView::addHotkey(HotkeyRecorder& recorder)
{
    kit::FormSection& section = addSection();
    auto& box = kit::makeChild<RecorderView>(section, recorder);
    kit::FormRow& row = section.addRow(translated(QT_TRANSLATE_NOOP("GeneralPane", "Dictation hotkey")), box);
    const auto showCaption = [&row, &recorder] {
        row.setCaption(recorder.complaint().value_or(
            translated(QT_TRANSLATE_NOOP("GeneralPane", "Hold the hotkey, speak, release to insert."))));
    };
    connect(&recorder, &HotkeyRecorder::changed, &row, showCaption);
    showCaption();
}

void GeneralPaneView::addText()
{
    kit::FormSection& section = addSection();
    bind(section.addToggle(translated(QT_TRANSLATE_NOOP("GeneralPane", "Auto punctuation & capitalization")))
             .toggle(),
         &Settings::autoPunctuation, &Settings::setAutoPunctuation, &Settings::autoPunctuationChanged);
    bind(section.addToggle(translated(QT_TRANSLATE_NOOP("GeneralPane", "Remove filler words (um, uh…)")))
             .toggle(),
         &Settings::removeDisfluencies, &Settings::setRemoveDisfluencies,
         &Settings::removeDisfluenciesChanged);
    rewrite_ =
        &section.addToggle(translated(QT_TRANSLATE_NOOP("GeneralPane", "Rewrite into clean sentences")));
    bind(rewrite_->toggle(), &Settings::cleanUpSentences, &Settings::setCleanUpSentences,
         &Settings::cleanUpSentencesChanged);
    openModelSettings_ = &kit::makeChild<kit::Button>(
        *rewrite_, translated(QT_TRANSLATE_NOOP("GeneralPane", "Open Apple Intelligence Settings…")),
        kit::ButtonRole::standard);
    rewrite_->addBelow(*openModelSettings_);
    connect(openModelSettings_, &QPushButton::clicked, &pane_, &GeneralPane::openAppleIntelligenceSettings);
    insertion_ = &kit::makeChild<kit::PopUpButton>(section);
    section.addRow(translated(QT_TRANSLATE_NOOP("GeneralPane", "Insert text by")), *insertion_);
    bindInsertion();
}

void GeneralPaneView::addGeneral()
{
    kit::FormSection& section = addSection();
    bind(section.addToggle(translated(QT_TRANSLATE_NOOP("GeneralPane", "Save history"))).toggle(),
         &Settings::saveHistory, &Settings::setSaveHistory, &Settings::saveHistoryChanged);
    launchAtLogin_ = &section.addToggle(translated(QT_TRANSLATE_NOOP("GeneralPane", "Launch at login")));
    connect(&launchAtLogin_->toggle(), &QAbstractButton::toggled, &pane_, [this](bool isOn) {
        if (isOn != pane_.launchAtLogin())
            pane_.setLaunchAtLogin(isOn);
    });
}

void GeneralPaneView::bind(kit::Switch& toggle, Getter get, Setter set, Signal changed)
{
    Settings& settings = pane_.settings();
    toggle.setChecked((settings.*get)());
    connect(&toggle, &QAbstractButton::toggled, &settings, [&settings, get, set](bool isOn) {
        if (isOn != (settings.*get)())
            (settings.*set)(isOn);
    });
    connect(&settings, changed, &toggle, [&settings, &toggle, get] { toggle.setChecked((settings.*get)()); });
}

void GeneralPaneView::bindInsertion()
{
    Settings& settings = pane_.settings();
    insertion_->addItem(translated(QT_TRANSLATE_NOOP("GeneralPane", "Typing")),
                        static_cast<int>(InsertionMethod::type));
    insertion_->addItem(translated(QT_TRANSLATE_NOOP("GeneralPane", "Pasting")),
                        static_cast<int>(InsertionMethod::paste));
    const auto show = [this, &settings] {
        insertion_->setCurrentIndex(insertion_->findData(static_cast<int>(settings.insertion())));
    };
    show();
    connect(insertion_, &QComboBox::activated, &settings, [this, &settings](int index) {
        settings.setInsertion(static_cast<InsertionMethod>(insertion_->itemData(index).toInt()));
    });
    connect(&settings, &Settings::insertionChanged, insertion_, show);
}

QString GeneralPaneView::modelLine() const
{
    if (!pane_.rewriteModel())
        return {};
    return translated(QT_TRANSLATE_NOOP("GeneralPane", "Model: %1")).arg(*pane_.rewriteModel());
}

void GeneralPaneView::showState()
{
    rewrite_->toggle().setEnabled(!pane_.rewriteCaption());
    rewrite_->setCaption(pane_.rewriteCaption().value_or(modelLine()));
    openModelSettings_->setVisible(pane_.canEnableAppleIntelligence());
    launchAtLogin_->setCaption(pane_.launchAtLoginError().value_or(QString()));
    launchAtLogin_->toggle().setChecked(pane_.launchAtLogin());
}

} // namespace corvandi
