#include "shell/panes/hotkey_recorder.h"

#include "ports/key_codes.h"

#include <QCoreApplication>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// Longer than anybody thinks about a hotkey; a keyboard that is forgotten here is of no use to anything.
constexpr MainQueue::Duration longestCapture = 60s;

} // namespace

HotkeyRecorder::HotkeyRecorder(Settings& settings, KeyCapture& capture, MainQueue& queue, SystemLog& log,
                               std::function<void()> onChange)
    : settings_(settings)
    , capture_(capture)
    , queue_(queue)
    , log_(log)
    , onChange_(std::move(onChange))
    , label_(settings.hotkeyDescription())
{
    connect(&settings_, &Settings::hotkeyDescriptionChanged, this, &HotkeyRecorder::refresh);
}

void HotkeyRecorder::refresh()
{
    if (isRecording_)
        return;
    const QString description = settings_.hotkeyDescription();
    if (description == label_)
        return;
    label_ = description;
    Q_EMIT changed();
}

void HotkeyRecorder::beginRecording()
{
    captureKeys();
    if (isRecording_)
        return;
    isRecording_ = true;
    complaint_.reset();
    label_ = QCoreApplication::translate("HotkeyRecorder", "Press keys…");
    Q_EMIT changed();
}

bool HotkeyRecorder::keyDown(const CapturedKey& key)
{
    if (!isRecording_)
        return false;
    if (!key.keyCode) {
        refuse(key.nativeCode);
        return true;
    }
    releaseKeys();
    store(*key.keyCode, key.flags);
    isRecording_ = false;
    complaint_.reset();
    label_ = settings_.hotkeyDescription();
    Q_EMIT changed();
    if (onChange_)
        onChange_();
    return true;
}

bool HotkeyRecorder::nativeKeyDown(uint32_t nativeCode, uint64_t flags)
{
    if (!isRecording_)
        return false;
    const auto keyCode = capture_.keyCode(nativeCode);
    if (!keyCode && !capture_.isModifier(nativeCode))
        refuse(nativeCode);
    return keyCode && keyDown({*keyCode, flags, nativeCode});
}

void HotkeyRecorder::refuse(uint32_t nativeCode)
{
    log_.write(
        QStringLiteral("the key with the window system's code %1 can't be the hotkey").arg(nativeCode));
    complaint_ =
        QCoreApplication::translate("HotkeyRecorder", "This key can't be the hotkey. Press another one.");
    Q_EMIT changed();
}

void HotkeyRecorder::store(uint16_t keyCode, uint64_t flags)
{
    const auto isHeld = [flags](uint64_t flag) { return (flags & flag) != 0; };
    settings_.setHotkeyKeyCode(keyCode);
    settings_.setHotkeyCommand(isHeld(modifier_flags::command));
    settings_.setHotkeyOption(isHeld(modifier_flags::option));
    settings_.setHotkeyShift(isHeld(modifier_flags::shift));
    settings_.setHotkeyControl(isHeld(modifier_flags::control));
}

void HotkeyRecorder::focusGained()
{
    if (isRecording_)
        captureKeys();
}

void HotkeyRecorder::focusLost()
{
    releaseKeys();
}

void HotkeyRecorder::captureKeys()
{
    limit_ = queue_.after(longestCapture, [this] { releaseKeys(); });
    if (!captured_)
        captured_ = capture_.begin([this](const CapturedKey& key) { (void)keyDown(key); });
}

void HotkeyRecorder::releaseKeys()
{
    captured_.reset();
    limit_.reset();
}

} // namespace corvandi
