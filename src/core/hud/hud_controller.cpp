#include "core/hud/hud_controller.h"

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

/// Speech is quiet: its amplitude rarely exceeds 0.08, which this gain maps to a full bar.
constexpr double levelGain = 3.6;
constexpr double lowestBar = 0.06;
constexpr double highestBar = 1.0;

double barHeight(float level)
{
    const double height = level >= 0 ? std::sqrt(static_cast<double>(level)) * levelGain : 0;
    return std::max(std::min(height, highestBar), lowestBar);
}

QString minutesAndSeconds(MainQueue::Duration time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

HUDController::HUDController(MainQueue& queue, HUDPanelFactory& panels)
    : queue_(queue)
    , panels_(panels)
{
}

void HUDController::showRecording()
{
    pendingHide_.reset();
    setState(HUDState::recording);
    model_.setStatusText(QString());
    model_.setBars(std::vector<double>(HUDModel::barCount, HUDModel::restingBar));
    start_ = queue_.now();
    model_.setElapsed(minutesAndSeconds({}));
    startTimer();
    present();
}

void HUDController::pushLevel(float level)
{
    if (model_.state() != HUDState::recording)
        return;
    std::vector<double> bars(std::next(model_.bars().begin()), model_.bars().end());
    bars.push_back(barHeight(level));
    model_.setBars(std::move(bars));
}

void HUDController::showProcessing(const QString& text)
{
    setState(HUDState::processing);
    model_.setStatusText(text);
    elapsedTimer_.reset();
}

void HUDController::showTransient(const QString& text, HUDState state)
{
    setState(state);
    model_.setStatusText(text);
    elapsedTimer_.reset();
    present();
    hide(transientTime);
}

void HUDController::hide(MainQueue::Duration delay)
{
    pendingHide_.reset();
    if (delay <= MainQueue::Duration::zero())
        dismiss();
    else
        pendingHide_ = queue_.after(delay, [this] { dismiss(); });
}

void HUDController::present()
{
    if (!panel_)
        panel_ = panels_.create(model_);
    if (const auto screen = panel_->mainScreenVisibleFrame()) {
        panel_->setFrame({screen->x + (screen->width - panelWidth) / 2,
                          screen->y + screen->height - bottomDistance - panelHeight, panelWidth,
                          panelHeight});
    }
    panel_->setAlpha(0);
    panel_->orderFront();
    panel_->fadeTo(1, fadeTime);
}

void HUDController::dismiss()
{
    elapsedTimer_.reset();
    if (panel_)
        panel_->orderOut();
    setState(HUDState::processing);
}

void HUDController::setState(HUDState state)
{
    if (model_.state() != state)
        model_.setState(state);
}

void HUDController::startTimer()
{
    elapsedTimer_ = queue_.every(elapsedTick, [this] { updateElapsed(); });
}

void HUDController::updateElapsed()
{
    const QString elapsed = minutesAndSeconds(queue_.now() - start_);
    if (model_.elapsed() != elapsed)
        model_.setElapsed(elapsed);
}

} // namespace corvandi
