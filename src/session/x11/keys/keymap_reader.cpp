#include "session/x11/keys/keymap_reader.h"

#include "session/x11/xcb_connection.h"

#include <algorithm>

namespace corvandi {
namespace {

constexpr uint16_t wantedParts =
    XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;

KeyType keyType(const xcb_xkb_key_type_t& wire)
{
    KeyType type{wire.mods_mask, wire.numLevels, {}};
    for (auto entry = xcb_xkb_key_type_map_iterator(&wire); entry.rem; xcb_xkb_kt_map_entry_next(&entry)) {
        if (entry.data->active)
            type.entries.push_back({entry.data->mods_mask, entry.data->level});
    }
    return type;
}

KeySymbols keySymbols(const xcb_xkb_key_sym_map_t& wire)
{
    KeySymbols key;
    std::copy_n(std::begin(wire.kt_index), key.types.size(), key.types.begin());
    key.groupInfo = wire.groupInfo;
    key.width = wire.width;
    const auto* symbols = xcb_xkb_key_sym_map_syms(&wire);
    key.symbols.assign(symbols, symbols + xcb_xkb_key_sym_map_syms_length(&wire));
    return key;
}

xcb_xkb_get_map_map_t unpack(const xcb_xkb_get_map_reply_t& reply)
{
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(&reply), reply.nTypes, reply.nKeySyms, reply.nKeyActions,
                               reply.totalActions, reply.totalKeyBehaviors, reply.virtualMods,
                               reply.totalKeyExplicit, reply.totalModMapKeys, reply.totalVModMapKeys,
                               reply.present, &map);
    return map;
}

std::vector<KeyType> readTypes(const xcb_xkb_get_map_reply_t& reply, const xcb_xkb_get_map_map_t& map)
{
    std::vector<KeyType> types;
    for (auto wire = xcb_xkb_get_map_map_types_rtrn_iterator(&reply, &map); wire.rem;
         xcb_xkb_key_type_next(&wire))
        types.push_back(keyType(*wire.data));
    return types;
}

std::vector<KeySymbols> readKeys(const xcb_xkb_get_map_reply_t& reply, const xcb_xkb_get_map_map_t& map)
{
    std::vector<KeySymbols> keys;
    for (auto wire = xcb_xkb_get_map_map_syms_rtrn_iterator(&reply, &map); wire.rem;
         xcb_xkb_key_sym_map_next(&wire))
        keys.push_back(keySymbols(*wire.data));
    for (auto wire = xcb_xkb_get_map_map_modmap_rtrn_iterator(&reply, &map); wire.rem;
         xcb_xkb_key_mod_map_next(&wire)) {
        const size_t index = static_cast<size_t>(wire.data->keycode) - reply.firstKeySym;
        if (index < keys.size())
            keys[index].modifiers = wire.data->mods;
    }
    return keys;
}

xcb_xkb_get_map_cookie_t askForKeymap(const X11Connection& connection, uint16_t device)
{
    return xcb_xkb_get_map(connection.get(), device, wantedParts, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                           0);
}

std::optional<Keymap> answer(const X11Connection& connection, xcb_xkb_get_map_cookie_t question)
{
    const auto reply = owned(xcb_xkb_get_map_reply(connection.get(), question, nullptr));
    if (!reply)
        return std::nullopt;
    const auto map = unpack(*reply);
    return Keymap(reply->firstKeySym, readTypes(*reply, map), readKeys(*reply, map));
}

} // namespace

std::optional<Keymap> readKeymap(const X11Connection& connection, uint16_t device)
{
    return answer(connection, askForKeymap(connection, device));
}

std::vector<Keymap> readKeymaps(const X11Connection& connection, const std::vector<uint16_t>& devices)
{
    std::vector<xcb_xkb_get_map_cookie_t> questions;
    for (const uint16_t device : devices)
        questions.push_back(askForKeymap(connection, device));
    std::vector<Keymap> keymaps;
    for (const auto& question : questions) {
        if (auto keymap = answer(connection, question))
            keymaps.push_back(std::move(*keymap));
    }
    return keymaps;
}

} // namespace corvandi
