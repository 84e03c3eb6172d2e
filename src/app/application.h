#pragma once

#include "ports/system_log.h"
#include "session/find_window_system.h"

#include <memory>

namespace corvandi {

/// The program: the one place where the objects that live as long as it does are created, wired and owned.
/// (Those that make up a dictation are made by its controller.)
///
/// Thread: main thread only, after the application object of the toolkit.
class Application {
public:
    /// `log` outlives the program.
    Application(SystemLog& log, const WindowSystem& windowSystem);
    /// Brings a dictation to its end, for which events are handled meanwhile, within a second.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// On the first run shows the welcome; else starts the hotkey and has the speech model prepared in the
    /// background. Later, if the desktop has yet to say whether its accessibility support is on.
    void start();
    /// The user has started the program once more: shows its window.
    void launchedAgain();

private:
    struct Objects;
    std::unique_ptr<Objects> objects_;
};

} // namespace corvandi
