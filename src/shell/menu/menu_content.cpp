#include "shell/menu/menu_content.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

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

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("MenuContent", text);
}

void appendStatus(MenuEntries& entries, const MenuContent& content)
{
    if (content.isHotkeyActive) {
        const QString line = translated(QT_TRANSLATE_NOOP("MenuContent", "Hold %1 to dictate"));
        entries.emplace_back(MenuText{line.arg(content.settings.hotkeyDescription())});
        return;
    }
    entries.emplace_back(MenuText{
        translated(QT_TRANSLATE_NOOP("MenuContent", "Hotkey inactive. Grant Accessibility to enable."))});
    entries.emplace_back(MenuButton{
        .title = translated(QT_TRANSLATE_NOOP("MenuContent", "Open Accessibility Settings…")),
        .action = content.actions.openAccessibility,
        .shortcut = {},
    });
}

MenuButton quitButton(std::function<void()> quit)
{
    return {
        .title = translated(QT_TRANSLATE_NOOP("MenuContent", "Quit Corvandi")),
        .action = std::move(quit),
        .shortcut = Qt::CTRL | Qt::Key_Q,
    };
}

} // namespace

MenuEntries refusedMenuEntries(const QString& words, std::function<void()> quit)
{
    MenuEntries entries;
    entries.emplace_back(MenuText{words});
    entries.emplace_back(MenuDivider{});
    entries.emplace_back(quitButton(std::move(quit)));
    return entries;
}

MenuEntries MenuContent::entries() const
{
    MenuEntries entries;
    appendStatus(entries, *this);
    entries.emplace_back(MenuDivider{});
    entries.emplace_back(MenuButton{
        .title = translated(QT_TRANSLATE_NOOP("MenuContent", "Check for Updates…")),
        .action = actions.checkForUpdates,
        .shortcut = {},
        .isEnabled = canCheckForUpdates,
    });
    entries.emplace_back(MenuButton{
        .title = translated(QT_TRANSLATE_NOOP("MenuContent", "Settings…")),
        .action = actions.openSettings,
        .shortcut = Qt::CTRL | Qt::Key_Comma,
    });
    entries.emplace_back(quitButton(actions.quit));
    return entries;
}

} // namespace corvandi
