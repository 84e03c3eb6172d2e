#pragma once

class QWidget;

namespace corvandi {

/// Has the window manager bring a window that is shown to the front and give it the keyboard.
///
/// Window managers keep windows that come up by themselves behind the one in which the user works, and
/// they tell by the time of the program's last key or click. A program that lives in the tray has none:
/// its clicks come over D-Bus. So the request says that it is the user's own, as a taskbar's does. To be
/// called only after the user has asked for the window.
///
/// Nothing happens on another platform than X11 or without a window manager. Thread: main thread only;
/// does not wait.
void bringToFront(const QWidget& window);

} // namespace corvandi
