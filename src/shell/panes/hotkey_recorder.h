#pragma once

#include "base/main_queue.h"
#include "core/data/settings.h"
#include "ports/key_capture.h"
#include "ports/system_log.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// Sets the dictation hotkey: once armed, the next key with whatever modifiers are held becomes the hotkey.
/// Nothing is filtered, and there is no key that cancels. Modifiers alone are not keys. After a key that
/// can't be a hotkey on this platform it says so, and goes on waiting for another one.
///
/// While it is armed and its view has the focus, keys are caught before anybody else sees them, at most
/// for a minute; when they are not (any more), they come by way of the view. It stays armed in any case
/// until it gets a key.
///
/// Thread: main thread only. The referees outlive it.
class HotkeyRecorder : public QObject {
    Q_OBJECT

public:
    /// `onChange` runs after a hotkey has been stored.
    HotkeyRecorder(Settings& settings, KeyCapture& capture, MainQueue& queue, SystemLog& log,
                   std::function<void()> onChange);

    [[nodiscard]] bool isRecording() const { return isRecording_; }
    /// The hotkey, or the prompt while armed.
    [[nodiscard]] const QString& label() const { return label_; }

    /// What is wrong with the key that was struck last; nothing when it has become the hotkey.
    [[nodiscard]] const std::optional<QString>& complaint() const { return complaint_; }

    /// Shows the present hotkey. Leaves the prompt while armed.
    void refresh();
    /// Arms it. The view gives itself the focus.
    void beginRecording();
    /// A key-down, from wherever it comes. False when it is not armed: then the key is not its business.
    [[nodiscard]] bool keyDown(const CapturedKey& key);
    /// The same with the code that the window system has given the key. False also for modifiers and keys
    /// that have no virtual key code.
    [[nodiscard]] bool nativeKeyDown(uint32_t nativeCode, uint64_t flags);

    void focusGained();
    /// The view has lost the focus, or is not on the screen any more.
    void focusLost();

Q_SIGNALS:
    /// The label, the recording flag or the complaint.
    void changed();

private:
    void captureKeys();
    void releaseKeys();
    void refuse(uint32_t nativeCode);
    void store(uint16_t keyCode, uint64_t flags);

    Settings& settings_;
    KeyCapture& capture_;
    MainQueue& queue_;
    SystemLog& log_;
    std::function<void()> onChange_;
    bool isRecording_ = false;
    QString label_;
    std::optional<QString> complaint_;
    std::unique_ptr<Registration> captured_;
    std::unique_ptr<Timer> limit_;
};

} // namespace corvandi
