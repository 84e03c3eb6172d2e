#pragma once

#include "core/hud/hud_model.h"
#include "ports/hud_panel.h"

#include <chrono>

namespace corvandi {

/// Shows the state of a dictation in a small panel near the bottom of the main screen. Owns the model,
/// the panel (made when it is shown for the first time) and the timers; while the panel is hidden there
/// is no timer.
///
/// Thread: main thread only. The queue and the maker of panels outlive the controller.
class HUDController {
public:
    /// The size of the panel and its distance from the bottom of the free part of the screen, in points.
    static constexpr double panelWidth = 300;
    static constexpr double panelHeight = 64;
    static constexpr double bottomDistance = 90;
    static constexpr std::chrono::milliseconds elapsedTick{200};
    /// How long a notice or an error stays.
    static constexpr std::chrono::milliseconds transientTime{1800};
    static constexpr std::chrono::milliseconds fadeTime{140};

    HUDController(MainQueue& queue, HUDPanelFactory& panels);

    /// Shows the recording face with a resting meter and the time running from zero. A pending hide is
    /// forgotten, so that one dictation's end never hides the next one.
    void showRecording();
    /// Feeds the meter one level: linear amplitude, 0 for silence. Ignored on the other faces.
    void pushLevel(float level);
    /// Switches to the processing face with this line. Neither shows a hidden panel nor schedules or
    /// cancels a hide.
    void showProcessing(const QString& text);
    /// Shows a notice or an error with this line, then hides by itself.
    void showTransient(const QString& text, HUDState state);
    /// Hides after `delay`, inside this call when that is zero or less. Replaces a pending hide.
    void hide(MainQueue::Duration delay);

    [[nodiscard]] HUDModel& model() { return model_; }

private:
    void present();
    void dismiss();
    void setState(HUDState state);
    void startTimer();
    void updateElapsed();

    MainQueue& queue_;
    HUDPanelFactory& panels_;
    HUDModel model_;
    std::unique_ptr<HUDPanel> panel_;
    MainQueue::Duration start_{};
    std::unique_ptr<Timer> elapsedTimer_;
    std::unique_ptr<Timer> pendingHide_;
};

} // namespace corvandi
