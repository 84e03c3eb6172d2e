#include "shell/app_delegate.h"

namespace corvandi {
namespace {

const QString didCompleteWelcome = QStringLiteral("didCompleteWelcome");

void present(ManagedWindow& window)
{
    window.center();
    window.activate();
}

} // namespace

std::shared_ptr<AppDelegate> AppDelegate::create(const Parts& parts, MakeController makeController)
{
    return std::make_shared<AppDelegate>(Private(), parts, std::move(makeController));
}

AppDelegate::AppDelegate(Private, const Parts& parts, MakeController makeController)
    : parts_(parts)
    , makeController_(std::move(makeController))
{
    parts_.permissions.refresh();
}

void AppDelegate::applicationDidFinishLaunching()
{
    if (!isCompleted()) {
        showWelcome();
        return;
    }
    parts_.activationPolicy.set(ActivationMode::accessory);
    startDictation();
}

void AppDelegate::applicationWasLaunchedAgain()
{
    if (isCompleted())
        showSettings();
    else
        showWelcome();
}

bool AppDelegate::isCompleted() const
{
    return parts_.defaults.boolean(didCompleteWelcome);
}

void AppDelegate::startDictation()
{
    DictationController& dictation = controller();
    dictation.applyHotkey();
    dictation.startHotkey();
    dictation.prepareModel();
}

DictationController& AppDelegate::controller()
{
    if (!controller_)
        controller_ = makeController_();
    return *controller_;
}

ManagedWindows::Callback AppDelegate::weakly(void (AppDelegate::*action)())
{
    return [weak = weak_from_this(), action] {
        if (const auto self = weak.lock())
            ((*self).*action)();
    };
}

void AppDelegate::showWelcome()
{
    parts_.activationPolicy.set(ActivationMode::regular);
    parts_.permissions.refresh();
    if (!welcomeWindow_)
        welcomeWindow_ = parts_.windows.makeWelcomeWindow(weakly(&AppDelegate::completeWelcome),
                                                          weakly(&AppDelegate::managedWindowWillClose));
    present(*welcomeWindow_);
}

void AppDelegate::completeWelcome()
{
    parts_.defaults.set(didCompleteWelcome, true);
    if (welcomeWindow_) {
        welcomeWindow_->close();
        // It is the caller; it goes when this call has returned.
        parts_.queue.async([window = std::shared_ptr(std::move(welcomeWindow_))] {});
    }
    parts_.queue.async([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->showSettings();
    });
    startDictation();
}

void AppDelegate::showSettings(std::optional<SettingsPane> initialPane)
{
    parts_.activationPolicy.set(ActivationMode::regular);
    if (initialPane)
        parts_.navigator.setPane(*initialPane);
    else if (!settingsWindow_)
        parts_.navigator.setPane(SettingsPane::general);
    if (!settingsWindow_)
        settingsWindow_ = parts_.windows.makeSettingsWindow(weakly(&AppDelegate::managedWindowWillClose));
    present(*settingsWindow_);
}

void AppDelegate::managedWindowWillClose()
{
    // Later, when the window that is closing is hidden.
    parts_.queue.async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self)
            return;
        const bool isWelcomeOpen = self->welcomeWindow_ && self->welcomeWindow_->isVisible();
        const bool areSettingsOpen = self->settingsWindow_ && self->settingsWindow_->isVisible();
        if (!isWelcomeOpen && !areSettingsOpen)
            self->parts_.activationPolicy.set(ActivationMode::accessory);
    });
}

} // namespace corvandi
