#include "system/accessibility/at_spi_accessibility_client.h"

#include <utility>

namespace corvandi {

ToolkitSetting::ToolkitSetting(SystemLog& log, QString tool)
    : log_(log)
    , tool_(std::move(tool))
{
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardOutputFile(QProcess::nullDevice());
    QObject::connect(&process_, &QProcess::errorOccurred, &process_,
                     [this] { onFailure(process_.errorString()); });
    QObject::connect(&process_, &QProcess::finished, &process_, [this](int code) {
        if (code != 0)
            onFailure(QString::fromLocal8Bit(process_.readAllStandardError()).trimmed());
    });
}

ToolkitSetting::~ToolkitSetting()
{
    process_.disconnect();
    process_.kill();
    process_.waitForFinished();
}

void ToolkitSetting::turnOn()
{
    if (process_.state() != QProcess::NotRunning)
        return;
    process_.start(tool_, {QStringLiteral("set"), QStringLiteral("org.gnome.desktop.interface"),
                           QStringLiteral("toolkit-accessibility"), QStringLiteral("true")});
}

void ToolkitSetting::onFailure(const QString& reason)
{
    if (!std::exchange(hasLogged_, true))
        log_.write(QStringLiteral("accessibility is on for this session only: %1: %2").arg(tool_, reason));
}

AtSpiAccessibilityClient::AtSpiAccessibilityClient(SystemLog& log, bool canWatchAndPostKeys, Person person,
                                                   QDBusConnection bus)
    : person_(std::move(person))
    , canWatchAndPostKeys_(canWatchAndPostKeys)
    , status_(std::move(bus), log)
    , toolkitSetting_(log)
{
    QObject::connect(&status_, &AccessibilityStatus::answered, &status_, [this] {
        if (std::exchange(promptWhenAnswered_, false) && !isTrusted())
            ask();
    });
}

bool AtSpiAccessibilityClient::isTrusted() const
{
    return canWatchAndPostKeys_ && status_.state() == AccessibilityStatus::State::enabled;
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
    if (!canWatchAndPostKeys_ || !status_.hasBus())
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
    person_.ask(life_.guard([this](bool granted) { onAnswer(granted); }));
}

void AtSpiAccessibilityClient::onAnswer(bool granted)
{
    const bool isFirstAnswer = std::exchange(isAskingPerson_, false);
    if (!isFirstAnswer || !granted)
        return;
    status_.enable();
    toolkitSetting_.turnOn();
}

PermittedEventTapFactory::PermittedEventTapFactory(EventTapFactory& taps,
                                                   const AtSpiAccessibilityClient& accessibility)
    : taps_(taps)
    , accessibility_(accessibility)
{
}

std::unique_ptr<EventTap> PermittedEventTapFactory::create(const KeyChord& chord, EventTap::Callback callback)
{
    if (accessibility_.isSwitchedOff())
        return nullptr;
    return taps_.create(chord, std::move(callback));
}

} // namespace corvandi
