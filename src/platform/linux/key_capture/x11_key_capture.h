#pragma once

#include "base/system_log.h"
#include "platform/key_capture.h"

namespace corvandi {

/// The keyboards of an X session, held by active asynchronous grabs of the slave devices, on a connection
/// of its own. Such a grab comes before the hotkey's tap, before window managers and before everything
/// else that listens to the master keyboard, and the window keeps its focus. Keyboards that are plugged
/// in meanwhile are held as well. When the program dies, the server gives the keyboards back.
///
/// `begin` takes a few round trips (well under a millisecond each) and refuses without a server and when
/// another program holds all keyboards in the same way; the log says so. Server gone while they are held:
/// logged, and no key comes any more.
class X11KeyCapture : public KeyCapture {
public:
    /// `log` must outlive the capture and what it has begun.
    explicit X11KeyCapture(SystemLog& log)
        : log_(log)
    {
    }

    [[nodiscard]] std::unique_ptr<Registration>
    begin(std::function<void(const CapturedKey&)> captured) override;
    /// `nativeCode` is the server's key code, which Qt calls the native scan code.
    [[nodiscard]] std::optional<uint16_t> keyCode(uint32_t nativeCode) const override;

private:
    SystemLog& log_;
};

} // namespace corvandi
