#pragma once

#include "shell/menu/menu_content.h"

#include <QMenu>

#include <functional>

namespace corvandi {

/// A menu of the toolkit that shows the entries which it is given. It asks for them anew each time that
/// it opens, also when a tray shows it in place of the program.
///
/// An action runs in a later turn of the event loop, when the menu has closed, and not at all when this
/// view is gone by then.
///
/// Thread: main thread only.
class MenuView {
public:
    using Provider = std::function<MenuEntries()>;

    explicit MenuView(Provider entries);

    [[nodiscard]] QMenu& menu() { return menu_; }
    /// Asks for the entries again. Needed after changes only where the menu's copy is shown by others,
    /// who may not ask before they open it. A menu that is open on the screen stays as it is.
    void refresh();

private:
    void rebuild();
    void choose(size_t index);

    Provider entries_;
    MenuEntries shown_;
    QMenu menu_;
};

} // namespace corvandi
