#pragma once

#include <QFileSystemWatcher>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace corvandi {

/// Tells when something changes in the folder in which the sound server puts its socket: a server that
/// starts is noticed at once and without asking again and again. The folder need not exist yet. A
/// server that is reached through the network can't be noticed this way.
///
/// Thread: main thread only.
class SocketWatch {
public:
    explicit SocketWatch(std::function<void()> changed);

private:
    void watchFolders();

    QFileSystemWatcher watcher_;
};

} // namespace corvandi

struct pa_mainloop_api;

namespace corvandi {

/// The sound thread: it runs the sound library's event loop, and all of that library's objects live on
/// it. It sleeps until there is something to do.
///
/// No `Worker`: the library starts this thread and owns its loop, and its objects need it for as long as they
/// live, not for one job.
class PulseThread {
public:
    using Work = std::function<void()>;

    PulseThread();
    /// Ends the thread. Work that is still waiting is dropped.
    ~PulseThread();
    PulseThread(const PulseThread&) = delete;
    PulseThread& operator=(const PulseThread&) = delete;

    /// Runs `work` on the sound thread, later, in the order of the calls. Never waits. Any thread.
    void post(Work work);
    /// Runs `work` on the sound thread and waits for it: for destructors. Not on the sound thread.
    void runAndWait(const Work& work);
    /// What the sound library's objects are created on. Sound thread only.
    [[nodiscard]] pa_mainloop_api& loop();

private:
    class Loop;

    void runPostedWork();

    std::mutex mutex_;
    std::vector<Work> posted_;
    std::unique_ptr<Loop> loop_;
};

} // namespace corvandi
