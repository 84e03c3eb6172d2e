#include "system/updates/file_opening.h"

#include <QFile>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>
#include <system_error>

namespace corvandi {
namespace {

QString systemError(int number)
{
    return QString::fromStdString(std::generic_category().message(number));
}

/// Becomes readable when the process ends. (The header of glibc 2.36 declares this call for C only.)
FileDescriptor openProcess(pid_t process)
{
    return FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

/// A session of its own, with none of this program's blocked signals.
class SpawnAttributes {
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&attributes_);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// Nothing to read, and nobody to listen.
class SilentStreams {
public:
    SilentStreams()
    {
        posix_spawn_file_actions_init(&actions_);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0);
    }
    ~SilentStreams() { posix_spawn_file_actions_destroy(&actions_); }
    SilentStreams(const SilentStreams&) = delete;
    SilentStreams& operator=(const SilentStreams&) = delete;
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

} // namespace

FileOpening::FileOpening(const QString& path, std::chrono::milliseconds patience, Finished finished)
    : finished_(std::move(finished))
{
    std::string program = "xdg-open";
    std::string file = QFile::encodeName(path).toStdString();
    const std::array<char*, 3> arguments = {program.data(), file.data(), nullptr};
    const int error = posix_spawnp(&process_, program.c_str(), SilentStreams().get(), SpawnAttributes().get(),
                                   arguments.data(), environ);
    patience_.setSingleShot(true);
    if (error != 0) {
        const QString complaint = QStringLiteral("xdg-open: ") + systemError(error);
        connect(&patience_, &QTimer::timeout, this, [this, complaint] { finish(complaint); });
        patience_.start(0);
        return;
    }
    processEnd_ = openProcess(process_);
    if (processEnd_.isOpen()) {
        notifier_ = std::make_unique<QSocketNotifier>(processEnd_.get(), QSocketNotifier::Read);
        connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { ended(); });
    }
    connect(&patience_, &QTimer::timeout, this, [this] { finish(std::nullopt); });
    patience_.start(patience);
}

void FileOpening::ended()
{
    notifier_->setEnabled(false);
    int status = 0;
    if (waitpid(process_, &status, WNOHANG) != process_)
        return;
    if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS)
        finish(std::nullopt);
    else
        finish(QStringLiteral("xdg-open ended with status %1").arg(WEXITSTATUS(status)));
}

void FileOpening::finish(const std::optional<QString>& complaint)
{
    patience_.stop();
    // Whoever is told may destroy this object.
    if (const Finished finished = std::exchange(finished_, {}))
        finished(complaint);
}

} // namespace corvandi
