#include "menu/menu_entry.h"

#include <algorithm>

namespace corvandi {
namespace {

/// Whether an entry looks like `other`, which is of the same kind.
struct SameLook {
    const MenuEntry& other;

    bool operator()(const MenuText& text) const { return text.text == std::get<MenuText>(other).text; }
    bool operator()(const MenuButton& button) const
    {
        const auto& same = std::get<MenuButton>(other);
        return button.title == same.title && button.shortcut == same.shortcut &&
               button.isEnabled == same.isEnabled;
    }
    bool operator()(const MenuDivider&) const { return true; }
};

} // namespace

bool looksLike(const MenuEntries& one, const MenuEntries& other)
{
    return std::ranges::equal(one, other, [](const MenuEntry& left, const MenuEntry& right) {
        return left.index() == right.index() && std::visit(SameLook{right}, left);
    });
}

} // namespace corvandi
