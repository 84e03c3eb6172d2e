#include "system/audio/pulse_thread.h"

#include "base/error.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <pulse/pulseaudio.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <future>

namespace corvandi {
namespace {

/// The folder of the native protocol's socket, by the sound library's own rules.
QString socketFolder()
{
    QString server = qEnvironmentVariable("PULSE_SERVER");
    if (server.startsWith(QLatin1String("unix:")))
        server.remove(0, QLatin1String("unix:").size());
    if (server.startsWith(QLatin1Char('/')))
        return QFileInfo(server).path();
    const QString folder = qEnvironmentVariable("PULSE_RUNTIME_PATH");
    if (!folder.isEmpty())
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QLatin1String("/pulse");
}

} // namespace

SocketWatch::SocketWatch(std::function<void()> changed)
{
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_,
                     [this, changed = std::move(changed)] {
                         watchFolders();
                         // Last: this may destroy the watch.
                         changed();
                     });
    watchFolders();
}

void SocketWatch::watchFolders()
{
    const QString folder = socketFolder();
    for (const QString& path : {folder, QFileInfo(folder).path()}) {
        if (QFileInfo(path).isDir() && !watcher_.directories().contains(path))
            watcher_.addPath(path);
    }
}

namespace {

/// Wakes an event loop from another thread.
class WakeUp {
public:
    WakeUp()
        : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
    }
    ~WakeUp() { close(descriptor_); }
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;

    [[nodiscard]] int descriptor() const { return descriptor_; }
    void signal() const { (void)eventfd_write(descriptor_, 1); }
    void acknowledge() const
    {
        eventfd_t count = 0;
        (void)eventfd_read(descriptor_, &count);
    }

private:
    int descriptor_;
};

struct LoopDeleter {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
};

} // namespace

class PulseThread::Loop {
public:
    explicit Loop(PulseThread& owner)
        : owner_(owner)
        , loop_(pa_threaded_mainloop_new())
    {
        pa_threaded_mainloop_set_name(loop_.get(), "sound");
        api().io_new(&api(), wakeUp_.descriptor(), PA_IO_EVENT_INPUT, &Loop::woken, this);
        if (pa_threaded_mainloop_start(loop_.get()) < 0)
            throw Error(QStringLiteral("the sound thread can't be started"));
    }
    ~Loop() { pa_threaded_mainloop_stop(loop_.get()); }
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    [[nodiscard]] pa_mainloop_api& api() { return *pa_threaded_mainloop_get_api(loop_.get()); }
    void wake() const { wakeUp_.signal(); }

private:
    static void woken(pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* self)
    {
        auto* loop = static_cast<Loop*>(self);
        loop->wakeUp_.acknowledge();
        loop->owner_.runPostedWork();
    }

    PulseThread& owner_;
    WakeUp wakeUp_;
    std::unique_ptr<pa_threaded_mainloop, LoopDeleter> loop_;
};

PulseThread::PulseThread()
    : loop_(std::make_unique<Loop>(*this))
{
}

PulseThread::~PulseThread() = default;

void PulseThread::post(Work work)
{
    {
        const std::lock_guard guard(mutex_);
        posted_.push_back(std::move(work));
    }
    loop_->wake();
}

void PulseThread::runAndWait(const Work& work)
{
    std::promise<void> done;
    post([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

pa_mainloop_api& PulseThread::loop()
{
    return loop_->api();
}

void PulseThread::runPostedWork()
{
    std::vector<Work> posted;
    {
        const std::lock_guard guard(mutex_);
        posted.swap(posted_);
    }
    for (const Work& work : posted)
        work();
}

} // namespace corvandi
