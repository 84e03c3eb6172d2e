#include "session/x11/keys/spare_keys.h"

#include "session/x11/keys/watched_chord.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>

namespace corvandi {
namespace {

/// Symbols above this one are characters: the rest of the symbol is the code point.
constexpr uint32_t unicodeSymbols = 0x01000000;

constexpr bool isOnKeypad(uint32_t symbol)
{
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

/// The character that a symbol types; 0 when it types none.
char32_t characterOf(uint32_t symbol)
{
    if (symbol == XKB_KEY_Return)
        return U'\n';
    if (symbol == XKB_KEY_Tab)
        return U'\t';
    if (isOnKeypad(symbol))
        return 0;
    const char32_t character = xkb_keysym_to_utf32(symbol);
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    return isControl ? 0 : character;
}

uint32_t symbolAt(const Keymap& keymap, uint8_t keyCode, uint8_t modifiers, uint8_t group)
{
    const KeySymbols& key = keymap.key(keyCode);
    if (key.groupCount() == 0 || key.modifiers != 0)
        return XKB_KEY_NoSymbol;
    const uint8_t effective = key.effectiveGroup(group);
    const uint8_t type = key.types.at(effective);
    if (type >= keymap.types().size())
        return XKB_KEY_NoSymbol;
    return key.symbol(effective, keymap.types()[type].level(modifiers));
}

bool isAvoided(const Stroke& stroke, const std::optional<X11Chord>& avoided)
{
    return avoided && stroke.keyCode == avoided->keyCode &&
           (stroke.modifiers & avoided->modifiers) == avoided->modifiers;
}

} // namespace

std::vector<uint8_t> reachableModifiers(const Keymap& keymap)
{
    std::vector<uint8_t> reachable{x11_mask::none};
    if (keymap.modifierKey(x11_mask::shift))
        reachable.push_back(x11_mask::shift);
    if (keymap.modifierKey(x11_mask::level3)) {
        reachable.push_back(x11_mask::level3);
        if (keymap.modifierKey(x11_mask::shift))
            reachable.push_back(x11_mask::shift | x11_mask::level3);
    }
    return reachable;
}

uint32_t symbolFor(char32_t character)
{
    if (character == U'\n')
        return XKB_KEY_Return;
    if (character == U'\t')
        return XKB_KEY_Tab;
    const bool isLatin1 =
        (character >= 0x20 && character <= 0x7E) || (character >= 0xA0 && character <= 0xFF);
    return isLatin1 ? character : unicodeSymbols | character;
}

CharacterMap::CharacterMap(const Keymap& keymap, const TypingConditions& conditions)
{
    for (const uint8_t modifiers : reachableModifiers(keymap)) {
        for (int code = keymap.firstKeyCode(); code <= keymap.lastKeyCode(); ++code) {
            const Stroke stroke{static_cast<uint8_t>(code), modifiers};
            const auto held = static_cast<uint8_t>(modifiers | conditions.standingModifiers);
            const char32_t character = characterOf(symbolAt(keymap, stroke.keyCode, held, conditions.group));
            if (character != 0 && !isAvoided(stroke, conditions.avoided))
                strokes_.emplace(character, stroke);
        }
    }
}

std::optional<Stroke> CharacterMap::find(char32_t character) const
{
    const auto found = strokes_.find(character);
    if (found == strokes_.end())
        return std::nullopt;
    return found->second;
}

std::u32string CharacterMap::missing(const std::u32string& text) const
{
    std::u32string missing;
    for (const char32_t character : text) {
        if (!strokes_.contains(character) && missing.find(character) == std::u32string::npos)
            missing.push_back(character);
    }
    return missing;
}

namespace {

/// How many levels of a type the given combinations reach, each a different one; 0 when CapsLock or
/// NumLock would have a say.
size_t reachedLevels(const KeyType& type, const std::vector<uint8_t>& combinations)
{
    constexpr uint8_t understood = x11_mask::shift | x11_mask::level3;
    if (type.modifiers & ~understood)
        return 0;
    std::vector<uint8_t> levels;
    for (const uint8_t combination : combinations) {
        const uint8_t level = type.level(combination);
        if (std::find(levels.begin(), levels.end(), level) == levels.end())
            levels.push_back(level);
    }
    return levels.size();
}

/// The type with the most levels within reach; of equals the smallest.
std::optional<uint8_t> roomiestType(const Keymap& keymap, const std::vector<uint8_t>& combinations)
{
    std::optional<uint8_t> best;
    size_t bestReached = 0;
    for (size_t i = 0; i < keymap.types().size(); ++i) {
        const size_t reached = reachedLevels(keymap.types()[i], combinations);
        const bool isSmaller =
            best && reached == bestReached && keymap.types()[i].levelCount < keymap.types()[*best].levelCount;
        if (reached > bestReached || isSmaller) {
            best = static_cast<uint8_t>(i);
            bestReached = reached;
        }
    }
    return best;
}

KeySymbols blankKey(uint8_t type, uint8_t levelCount)
{
    KeySymbols key;
    key.types = {type, 0, 0, 0};
    key.groupInfo = 1;
    key.width = levelCount;
    key.symbols.assign(levelCount, 0);
    return key;
}

} // namespace

void SpareKeys::reconcile(const Keymap& present)
{
    std::erase_if(ours_, [&](const auto& entry) {
        const auto& [code, symbols] = entry;
        const uint8_t type = symbols.types[0];
        return !present.contains(code) || present.key(code) != symbols || type >= present.types().size() ||
               present.types()[type].levelCount != symbols.width;
    });
}

std::optional<Keymap> SpareKeys::withCharacters(const Keymap& present, const std::u32string& characters) const
{
    const auto combinations = reachableModifiers(present);
    const auto type = roomiestType(present, combinations);
    std::vector<uint8_t> keys = present.emptyKeys();
    if (!type || keys.empty())
        return std::nullopt;
    keys.pop_back();
    Keymap planned = present;
    for (const uint8_t key : keys)
        planned.key(key) = blankKey(*type, present.types()[*type].levelCount);
    for (const auto& [key, symbols] : ours_)
        keys.push_back(key);

    auto next = characters.begin();
    for (const uint8_t combination : combinations) {
        for (const uint8_t code : keys) {
            KeySymbols& key = planned.key(code);
            auto& symbol = key.symbols.at(present.types().at(key.types[0]).level(combination));
            if (symbol == 0 && next != characters.end())
                symbol = symbolFor(*next++);
        }
    }
    if (next != characters.end())
        return std::nullopt;
    for (const uint8_t code : keys) {
        if (planned.key(code).isEmpty())
            planned.key(code) = present.key(code);
    }
    return planned;
}

Keymap SpareKeys::withoutCharacters(const Keymap& present) const
{
    Keymap cleared = present;
    for (const auto& [code, symbols] : ours_)
        std::fill(cleared.key(code).symbols.begin(), cleared.key(code).symbols.end(), 0);
    return cleared;
}

void SpareKeys::adopt(const Keymap& present, const Keymap& written)
{
    for (const uint8_t code : changedKeys(present, written))
        ours_[code] = written.key(code);
    std::erase_if(ours_, [](const auto& entry) { return entry.second.isEmpty(); });
}

std::vector<uint8_t> changedKeys(const Keymap& before, const Keymap& after)
{
    std::vector<uint8_t> changed;
    for (int code = before.firstKeyCode(); code <= before.lastKeyCode(); ++code) {
        const auto keyCode = static_cast<uint8_t>(code);
        if (before.key(keyCode) != after.key(keyCode))
            changed.push_back(keyCode);
    }
    return changed;
}

} // namespace corvandi
