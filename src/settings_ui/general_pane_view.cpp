#include "settings_ui/general_pane_view.h"

#include "settings_ui/appearing.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/recorder_view.h"

#include <QCoreApplication>

namespace corvandi {
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
    row.setCaption(
        translated(QT_TRANSLATE_NOOP("GeneralPane", "Hold the hotkey, speak, release to insert.")));
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

void GeneralPaneView::showState()
{
    rewrite_->toggle().setEnabled(!pane_.rewriteCaption());
    rewrite_->setCaption(pane_.rewriteCaption().value_or(QString()));
    openModelSettings_->setVisible(pane_.canEnableAppleIntelligence());
    launchAtLogin_->setCaption(pane_.launchAtLoginError().value_or(QString()));
    launchAtLogin_->toggle().setChecked(pane_.launchAtLogin());
}

} // namespace corvandi
