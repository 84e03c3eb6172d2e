#pragma once

#include "core/dictation/dictation_controller.h"

#include "support/fake_accessibility.h"
#include "support/fake_audio_converter.h"
#include "support/fake_audio_input.h"
#include "support/fake_event_tap.h"
#include "support/fake_files.h"
#include "support/fake_focus.h"
#include "support/fake_hud_panel.h"
#include "support/fake_keyboard.h"
#include "support/fake_language_model.h"
#include "support/fake_pasteboard.h"
#include "support/fake_session.h"
#include "support/fake_session_lock.h"
#include "support/fake_speech_framework.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

namespace corvandi::testing {

using namespace std::chrono_literals;

/// A controller on a platform of fakes: a text field has the focus in an editor, everything works, and
/// time stands still unless a test lets it pass.
class DictationFixture : public ::testing::Test {
protected:
    DictationFixture();
    ~DictationFixture() override;

    /// The press handler, and everything that becomes due at once.
    void press();
    /// The release handler, and everything that becomes due at once.
    void release();
    /// Presses, holds for `held` and releases; the transcript is still open afterwards.
    void hold(MainQueue::Duration held = 1s);
    /// A dictation from press to delivery in which `text` is recognised.
    void dictate(const QString& text);
    /// Like `dictate`, but the recognition breaks off after `text`.
    void dictateAndFail(const QString& text);
    /// Ends the recognition of the latest dictation with `text`.
    void recognise(const QString& text);

    [[nodiscard]] HUDModel& face() { return controller->hud().model(); }
    /// The HUD shows this message in this style.
    [[nodiscard]] bool shows(HUDState state, const char* message);
    /// Nothing has been typed, and nobody's clipboard touched.
    [[nodiscard]] bool nothingWasDelivered() const;

    VirtualQueue queue;
    FakeWallClock clock;
    RecordingLog log;
    FakeFileSystem files;
    ManualWorkQueue storeQueue;
    FakeUserDefaults defaults;
    FakeEventTapFactory taps;
    FakeKeyboard keyboard;
    FakePasteboard pasteboard;
    FakeAccessibility accessibility;
    FakeFocus focus{queue};
    FakeWorkspace workspace;
    FakeSessionLock lock;
    FakeAudioInput input;
    FakeAudioConverterFactory converters;
    FakeCaptureAuthorization microphone;
    FakeSpeechFramework engine;
    FakeLanguageModel model{queue};
    FakeHUDPanelFactory panels;
    Settings settings{defaults};
    std::shared_ptr<DictationController> controller;
};

} // namespace corvandi::testing
