#include "session/x11/keys/keymap_writer.h"

#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"

#include <algorithm>
#include <cstring>

namespace corvandi {
namespace {

bool bearsTheSame(const KeySymbols& one, const KeySymbols& other)
{
    return one.types == other.types && one.groupInfo == other.groupInfo && one.width == other.width &&
           one.symbols == other.symbols;
}

bool isSameEverywhere(uint8_t keyCode, const Keymap& wanted, std::span<const Keymap> keyboards)
{
    return std::all_of(keyboards.begin(), keyboards.end(), [&](const Keymap& keyboard) {
        return keyboard.contains(keyCode) && bearsTheSame(keyboard.key(keyCode), wanted.key(keyCode));
    });
}

bool canBridge(uint8_t from, uint8_t to, const Keymap& wanted, std::span<const Keymap> keyboards)
{
    for (int code = from + 1; code < to; ++code) {
        if (!isSameEverywhere(static_cast<uint8_t>(code), wanted, keyboards))
            return false;
    }
    return true;
}

void append(std::vector<std::byte>& bytes, const void* data, size_t size)
{
    const size_t end = bytes.size();
    bytes.resize(end + size);
    std::memcpy(bytes.data() + end, data, size);
}

/// The keys as the protocol wants them: a head and the symbols, for each.
std::vector<std::byte> wireFormat(const KeyRange& range, const Keymap& wanted)
{
    std::vector<std::byte> bytes;
    for (int code = range.first; code <= range.last; ++code) {
        const KeySymbols& key = wanted.key(static_cast<uint8_t>(code));
        xcb_xkb_key_sym_map_t head{};
        std::copy(key.types.begin(), key.types.end(), std::begin(head.kt_index));
        head.groupInfo = key.groupInfo;
        head.width = key.width;
        head.nSyms = static_cast<uint16_t>(key.symbols.size());
        append(bytes, &head, sizeof head);
        append(bytes, key.symbols.data(), key.symbols.size() * sizeof(uint32_t));
    }
    return bytes;
}

uint16_t symbolCount(const KeyRange& range, const Keymap& wanted)
{
    size_t count = 0;
    for (int code = range.first; code <= range.last; ++code)
        count += wanted.key(static_cast<uint8_t>(code)).symbols.size();
    return static_cast<uint16_t>(count);
}

/// Actions stay as they are: characters have none, and the keys in between keep theirs.
constexpr uint16_t noFlags = 0;

xcb_void_cookie_t writeRange(const X11Connection& connection, uint16_t device, const KeyRange& range,
                             const Keymap& wanted)
{
    const auto bytes = wireFormat(range, wanted);
    return xcb_xkb_set_map_checked(connection.get(), device, XCB_XKB_MAP_PART_KEY_SYMS, noFlags,
                                   wanted.firstKeyCode(), static_cast<uint8_t>(wanted.lastKeyCode()), 0, 0,
                                   range.first, static_cast<uint8_t>(range.last - range.first + 1),
                                   symbolCount(range, wanted), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                   bytes.data());
}

std::vector<Keymap> allKeymaps(const X11Connection& connection)
{
    std::vector<uint16_t> devices{XCB_XKB_ID_USE_CORE_KBD};
    for (const KeyboardDevice& device : slaveKeyboards(connection, Floating::too))
        devices.push_back(device.id);
    return readKeymaps(connection, devices);
}

} // namespace

std::vector<KeyRange> rangesToWrite(const std::vector<uint8_t>& keys, const Keymap& wanted,
                                    std::span<const Keymap> keyboards)
{
    std::vector<KeyRange> ranges;
    for (const uint8_t key : keys) {
        if (!ranges.empty() && canBridge(ranges.back().last, key, wanted, keyboards))
            ranges.back().last = key;
        else
            ranges.push_back({key, key});
    }
    return ranges;
}

bool writeKeys(const X11Connection& connection, const std::vector<uint8_t>& keys, const Keymap& wanted)
{
    const std::vector<KeyRange> ranges = rangesToWrite(keys, wanted, allKeymaps(connection));
    std::vector<xcb_void_cookie_t> cookies;
    for (const KeyRange& range : ranges)
        cookies.push_back(writeRange(connection, XCB_XKB_ID_USE_CORE_KBD, range, wanted));
    // One that a grab keeps from its master, such as the hotkey's at its press, is left out by that; soon it
    // will give the master its map.
    for (const KeyboardDevice& device : slaveKeyboards(connection, Floating::too)) {
        for (const KeyRange& range : ranges) {
            if (device.isFloating)
                cookies.push_back(writeRange(connection, device.id, range, wanted));
        }
    }
    bool isWritten = connection.isUsable();
    for (const auto cookie : cookies) {
        if (owned(xcb_request_check(connection.get(), cookie)))
            isWritten = false;
    }
    return isWritten;
}

} // namespace corvandi
