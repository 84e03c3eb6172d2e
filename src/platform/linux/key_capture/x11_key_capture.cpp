#include "platform/linux/key_capture/x11_key_capture.h"

#include "platform/linux/key_capture/held_keyboard.h"

namespace corvandi {

std::unique_ptr<Registration> X11KeyCapture::begin(std::function<void(const CapturedKey&)> captured)
{
    auto connection = X11Connection::open(log_);
    if (!connection)
        return nullptr;
    auto held = std::make_unique<HeldKeyboard>(std::move(*connection), log_, std::move(captured));
    if (!held->hold()) {
        log_.write(QStringLiteral("another program holds the keyboard"));
        return nullptr;
    }
    return held;
}

std::optional<uint16_t> X11KeyCapture::keyCode(uint32_t nativeCode) const
{
    return capturableKey(nativeCode);
}

} // namespace corvandi
