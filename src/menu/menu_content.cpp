#include "menu/menu_content.h"

#include <QCoreApplication>

namespace corvandi {
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

} // namespace

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
    entries.emplace_back(MenuButton{
        .title = translated(QT_TRANSLATE_NOOP("MenuContent", "Quit Corvandi")),
        .action = actions.quit,
        .shortcut = Qt::CTRL | Qt::Key_Q,
    });
    return entries;
}

} // namespace corvandi
