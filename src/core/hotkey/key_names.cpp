#include "core/hotkey/key_names.h"

#include <QLatin1String>

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

struct NamedKey {
    int64_t code;
    QLatin1String name;
};

template<size_t size>
constexpr NamedKey key(int64_t code, const char (&name)[size])
{
    return {code, QLatin1String(name, size - 1)};
}

// clang-format off
constexpr std::array namedKeys{
    key(0, "A"),   key(1, "S"),   key(2, "D"),   key(3, "F"),   key(4, "H"),   key(5, "G"),
    key(6, "Z"),   key(7, "X"),   key(8, "C"),   key(9, "V"),   key(11, "B"),  key(12, "Q"),
    key(13, "W"),  key(14, "E"),  key(15, "R"),  key(16, "Y"),  key(17, "T"),  key(18, "1"),
    key(19, "2"),  key(20, "3"),  key(21, "4"),  key(22, "6"),  key(23, "5"),  key(25, "9"),
    key(26, "7"),  key(28, "8"),  key(29, "0"),  key(31, "O"),  key(32, "U"),  key(34, "I"),
    key(35, "P"),  key(37, "L"),  key(38, "J"),  key(40, "K"),  key(45, "N"),  key(46, "M"),
    key(36, "Return"), key(48, "Tab"), key(49, "Space"), key(51, "Delete"), key(53, "Esc"),
};
// clang-format on

} // namespace

QString KeyCodes::name(int64_t keyCode)
{
    const auto* found = std::ranges::find(namedKeys, keyCode, &NamedKey::code);
    return found == namedKeys.end() ? QStringLiteral("Key %1").arg(keyCode) : QString(found->name);
}

} // namespace corvandi
