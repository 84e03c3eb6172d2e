#include "platform/linux/accessibility/at_spi_accessibility_client.h"

#include "platform/linux/accessibility/input_extensions.h"

namespace corvandi {

AtSpiAccessibilityClient::AtSpiAccessibilityClient(SystemLog& log, Person person, QDBusConnection bus)
    : person_(std::move(person))
    , hasInputExtensions_(hasInputExtensions())
    , status_(std::move(bus), log)
    , toolkitSetting_(log)
{
    if (!hasInputExtensions_)
        log.write(QStringLiteral(
            "the X server lacks XInput 2.2, XKB or XTEST, so keys can't be watched or posted"));
    QObject::connect(&status_, &AccessibilityStatus::answered, &status_, [this] {
        if (std::exchange(promptWhenAnswered_, false) && !isTrusted())
            ask();
    });
}

bool AtSpiAccessibilityClient::isTrusted() const
{
    return hasInputExtensions_ && status_.state() == AccessibilityStatus::State::enabled;
}

bool AtSpiAccessibilityClient::isSwitchedOff() const
{
    return status_.state() == AccessibilityStatus::State::disabled;
}

void AtSpiAccessibilityClient::whenAnswered(std::function<void()> callback)
{
    if (!status_.isAsking())
        return callback();
    QObject::connect(&status_, &AccessibilityStatus::answered, &status_, std::move(callback),
                     Qt::SingleShotConnection);
}

bool AtSpiAccessibilityClient::isProcessTrusted(TrustPrompt prompting)
{
    status_.refresh();
    const bool trusted = isTrusted();
    if (!trusted && prompting == TrustPrompt::askPerson)
        prompt();
    return trusted;
}

void AtSpiAccessibilityClient::prompt()
{
    if (!hasInputExtensions_ || !status_.hasBus())
        return;
    if (isAskingPerson_)
        person_.remind();
    else if (status_.isAsking())
        promptWhenAnswered_ = true;
    else
        ask();
}

void AtSpiAccessibilityClient::ask()
{
    isAskingPerson_ = true;
    person_.ask([this, alive = std::weak_ptr(alive_)](bool granted) {
        if (!alive.expired())
            onAnswer(granted);
    });
}

void AtSpiAccessibilityClient::onAnswer(bool granted)
{
    const bool isFirstAnswer = std::exchange(isAskingPerson_, false);
    if (!isFirstAnswer || !granted)
        return;
    status_.enable();
    toolkitSetting_.turnOn();
}

} // namespace corvandi
