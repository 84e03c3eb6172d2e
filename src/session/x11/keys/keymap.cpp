#include "session/x11/keys/keymap.h"

#include "session/x11/keys/watched_chord.h"

#include <algorithm>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace corvandi {
namespace {

constexpr uint8_t clampIntoRange = 0x40;
constexpr uint8_t redirectIntoRange = 0x80;
constexpr uint8_t outOfRangeBits = 0xC0;

/// The symbols of keys that hold a modifier while they are down, not those that lock or latch it.
std::vector<uint32_t> holdingSymbols(uint8_t modifier)
{
    switch (modifier) {
    case x11_mask::shift:
        return {XKB_KEY_Shift_L, XKB_KEY_Shift_R};
    case x11_mask::control:
        return {XKB_KEY_Control_L, XKB_KEY_Control_R};
    case x11_mask::alt:
        return {XKB_KEY_Alt_L, XKB_KEY_Alt_R, XKB_KEY_Meta_L, XKB_KEY_Meta_R};
    case x11_mask::super:
        return {XKB_KEY_Super_L, XKB_KEY_Super_R};
    case x11_mask::level3:
        return {XKB_KEY_ISO_Level3_Shift};
    default:
        return {};
    }
}

constexpr bool actsWhileDown(uint32_t symbol)
{
    const bool isClassic = symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R;
    const bool isLock = symbol == XKB_KEY_Caps_Lock || symbol == XKB_KEY_Shift_Lock;
    const bool isLaterOne = symbol == XKB_KEY_ISO_Level3_Shift || symbol == XKB_KEY_ISO_Level5_Shift ||
                            symbol == XKB_KEY_Mode_switch;
    return (isClassic && !isLock) || isLaterOne;
}

} // namespace

uint8_t KeyType::level(uint8_t held) const
{
    const int relevant = held & modifiers;
    for (const Entry& entry : entries) {
        if (entry.modifiers == relevant)
            return entry.level;
    }
    return 0;
}

bool KeySymbols::isEmpty() const
{
    return modifiers == 0 && std::all_of(symbols.begin(), symbols.end(),
                                         [](uint32_t symbol) { return symbol == XKB_KEY_NoSymbol; });
}

bool KeySymbols::isHeldModifier() const
{
    return (modifiers & ~lockModifiers) != 0 || std::any_of(symbols.begin(), symbols.end(), actsWhileDown);
}

uint8_t KeySymbols::effectiveGroup(uint8_t group) const
{
    const uint8_t count = groupCount();
    if (group < count || count == 0)
        return group;
    const auto last = static_cast<uint8_t>(count - 1);
    switch (groupInfo & outOfRangeBits) {
    case clampIntoRange:
        return last;
    case redirectIntoRange:
        return std::min(static_cast<uint8_t>((groupInfo >> 4) & 0x03), last);
    default:
        return static_cast<uint8_t>(group % count);
    }
}

uint32_t KeySymbols::symbol(uint8_t group, uint8_t level) const
{
    const size_t position = size_t{group} * width + level;
    if (level >= width || position >= symbols.size())
        return XKB_KEY_NoSymbol;
    return symbols[position];
}

Keymap::Keymap(uint8_t firstKeyCode, std::vector<KeyType> types, std::vector<KeySymbols> keys)
    : firstKeyCode_(firstKeyCode)
    , types_(std::move(types))
    , keys_(std::move(keys))
{
}

bool Keymap::contains(uint8_t keyCode) const
{
    return keyCode >= firstKeyCode_ && keyCode <= lastKeyCode();
}

std::vector<uint8_t> Keymap::emptyKeys() const
{
    std::vector<uint8_t> empty;
    for (int keyCode = firstKeyCode_; keyCode <= lastKeyCode(); ++keyCode) {
        if (key(static_cast<uint8_t>(keyCode)).isEmpty())
            empty.push_back(static_cast<uint8_t>(keyCode));
    }
    return empty;
}

std::optional<uint8_t> Keymap::neutralKey() const
{
    const auto empty = emptyKeys();
    if (empty.empty())
        return std::nullopt;
    return empty.back();
}

std::optional<uint8_t> Keymap::modifierKey(uint8_t modifier) const
{
    for (const uint32_t wanted : holdingSymbols(modifier)) {
        for (int code = firstKeyCode_; code <= lastKeyCode(); ++code) {
            const KeySymbols& candidate = key(static_cast<uint8_t>(code));
            if (candidate.modifiers == modifier && candidate.symbol(0, 0) == wanted)
                return static_cast<uint8_t>(code);
        }
    }
    return std::nullopt;
}

} // namespace corvandi
