#pragma once

#include "ports/keyboard.h"
#include "session/x11/keys/x11_connection.h"

#include "support/recording_log.h"

#include <optional>

namespace corvandi::testing {

/// Key codes of the server that the tests press.
namespace key {
inline constexpr uint8_t a = 38;
inline constexpr uint8_t b = 56;
inline constexpr uint8_t space = 65;
inline constexpr uint8_t leftShift = 50;
inline constexpr uint8_t leftControl = 37;
inline constexpr uint8_t leftAlt = 64;
inline constexpr uint8_t capsLock = 66;
inline constexpr uint8_t numLock = 77;
inline constexpr uint8_t leftSuper = 133;
inline constexpr uint8_t f5 = 71;
inline constexpr uint8_t f6 = 72;
} // namespace key

/// A person's keyboard. All keys that are still down are released when it goes.
class TestKeyboard {
public:
    /// Synthetic: the keyboard that tests and remote sessions use. Hardware: the server's own one, whose
    /// keys are moved as its driver would.
    enum class Kind { synthetic, hardware };

    explicit TestKeyboard(Kind kind);
    /// The slave keyboard with this id.
    explicit TestKeyboard(uint16_t device);
    ~TestKeyboard();

    /// Each returns when the server has handled the key.
    void press(uint8_t keyCode);
    void release(uint8_t keyCode);
    void strike(uint8_t keyCode);

    [[nodiscard]] const X11Connection& connection() const { return *connection_; }

private:
    void play(uint8_t keyCode, KeyDirection direction);

    RecordingLog log_;
    std::optional<X11Connection> connection_;
    uint16_t device_ = 0;
    std::vector<uint8_t> down_;
};

} // namespace corvandi::testing
