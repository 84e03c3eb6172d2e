#pragma once

#include "panes/general_pane.h"
#include "panes/hotkey_recorder.h"
#include "settings_ui/kit/button.h"
#include "settings_ui/kit/grouped_form.h"
#include "settings_ui/kit/pop_up_button.h"

namespace corvandi {

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
    void showState();

    GeneralPane& pane_;
    kit::ToggleRow* rewrite_ = nullptr;
    kit::Button* openModelSettings_ = nullptr;
    kit::PopUpButton* insertion_ = nullptr;
    kit::ToggleRow* launchAtLogin_ = nullptr;
};

} // namespace corvandi
