#include "views/menu/menu_view.h"

#include <QKeySequence>

#include <utility>

namespace corvandi {
namespace {

/// An ampersand would underline the letter that follows it.
QString withoutMnemonics(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// Adds an entry to the end of a menu; gives back the action if it can be chosen.
struct Append {
    QMenu& menu;

    QAction* operator()(const MenuText& text) const
    {
        menu.addAction(withoutMnemonics(text.text))->setEnabled(false);
        return nullptr;
    }
    QAction* operator()(const MenuButton& button) const
    {
        QAction* action = menu.addAction(withoutMnemonics(button.title));
        action->setEnabled(button.isEnabled);
        if (button.shortcut)
            action->setShortcut(QKeySequence(*button.shortcut));
        return action;
    }
    QAction* operator()(const MenuDivider&) const
    {
        menu.addSeparator();
        return nullptr;
    }
};

} // namespace

MenuView::MenuView(Provider entries)
    : entries_(std::move(entries))
{
    QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { refresh(); });
    refresh();
}

void MenuView::refresh()
{
    if (menu_.isVisible())
        return;
    MenuEntries entries = entries_();
    const bool isSame = looksLike(shown_, entries);
    shown_ = std::move(entries);
    // Whoever shows a copy may have asked for it already; new items would make its choice void.
    if (!isSame)
        rebuild();
}

void MenuView::rebuild()
{
    menu_.clear();
    for (size_t index = 0; index < shown_.size(); ++index) {
        if (QAction* action = std::visit(Append{menu_}, shown_[index]))
            QObject::connect(action, &QAction::triggered, &menu_, [this, index] { choose(index); });
    }
}

void MenuView::choose(size_t index)
{
    if (const std::function<void()>& action = std::get<MenuButton>(shown_[index]).action)
        QMetaObject::invokeMethod(&menu_, action, Qt::QueuedConnection);
}

} // namespace corvandi
