#pragma once

#include <QWidget>

#include <functional>

namespace corvandi {

/// Calls `action` each time that the widget appears on the screen, and when the application becomes active
/// again while the widget is there: what was changed in another program meanwhile shows up then.
void whenAppearing(QWidget& widget, std::function<void()> action);

} // namespace corvandi
