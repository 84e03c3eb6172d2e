#pragma once

#include "shell/panes/general_pane.h"
#include "shell/panes/hotkey_recorder.h"
#include "views/kit/button.h"
#include "views/kit/controls.h"
#include "views/kit/form.h"

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

/// The page with the hotkey, what becomes of the text, and how the program starts.
///
/// The referees outlive it.
class GeneralPaneView : public kit::GroupedForm {
    Q_OBJECT

public:
    GeneralPaneView(GeneralPane& pane, HotkeyRecorder& recorder, QWidget* parent = nullptr);

private:
    using Getter = bool (Settings::*)() const;
    using Setter = void (Settings::*)(bool);
    using Signal = void (Settings::*)();

    void bind(kit::Switch& toggle, Getter get, Setter set, Signal changed);
    void bindInsertion();
    void addHotkey(HotkeyRecorder& recorder);
    void addText();
    void addGeneral();
    [[nodiscard]] QString modelLine() const;
    void showState();

    GeneralPane& pane_;
    kit::ToggleRow* rewrite_ = nullptr;
    kit::Button* openModelSettings_ = nullptr;
    kit::PopUpButton* insertion_ = nullptr;
    kit::ToggleRow* launchAtLogin_ = nullptr;
};

} // namespace corvandi
