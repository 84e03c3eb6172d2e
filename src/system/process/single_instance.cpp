#include "system/process/single_instance.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace corvandi {
namespace {

constexpr mode_t onlyTheOwner = S_IRWXU;

bool isPrivateFolder(const QByteArray& path)
{
    struct stat status = {};
    if (lstat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    return status.st_uid == getuid() && (status.st_mode & ALLPERMS) == onlyTheOwner;
}

} // namespace

std::optional<QString> instanceFolder(const QString& temporaryFolder)
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime) && access(QFile::encodeName(runtime).constData(), W_OK | X_OK) == 0)
        return runtime;

    const QString folder = temporaryFolder + QStringLiteral("/corvandi-") + QString::number(getuid());
    const QByteArray path = QFile::encodeName(folder);
    // It may exist already; what counts is what it is now.
    (void)mkdir(path.constData(), onlyTheOwner);
    return isPrivateFolder(path) ? std::optional(folder) : std::nullopt;
}

namespace {

using namespace std::chrono_literals;

/// How long a person who starts the program a second time is kept waiting for a hung first one.
constexpr auto answerLimit = 1s;
/// Between two attempts to reach an instance that is just starting or ending.
constexpr auto retryPause = 20ms;

const QByteArray request = QByteArrayLiteral("activate\n");
const QByteArray acknowledgement = QByteArrayLiteral("activated\n");

int remaining(const QDeadlineTimer& deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

/// Tells the instance behind the socket that another was started; true when it has acknowledged that.
bool tell(const QString& socketPath, const QDeadlineTimer& deadline)
{
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(remaining(deadline)))
        return false;
    socket.write(request);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(remaining(deadline)))
            return false;
    }
    return socket.readLine() == acknowledgement;
}

} // namespace

SingleInstance::SingleInstance(SystemLog& log, std::function<void()> activated, std::optional<QString> folder)
    : log_(log)
    , activated_(std::move(activated))
{
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { welcome(); });
    if (folder)
        becomeFirstOrTell(*folder);
    else
        log_.write(QStringLiteral("no private folder for the lock file, so other instances go unnoticed"));
}

void SingleInstance::becomeFirstOrTell(const QString& folder)
{
    socketPath_ = folder + QStringLiteral("/corvandi.socket");
    lock_ = std::make_unique<QLockFile>(folder + QStringLiteral("/corvandi.lock"));
    // A lock gets stale by its process's end, never by its age.
    lock_->setStaleLockTime(0);

    const QDeadlineTimer deadline(answerLimit);
    while (!takeLock()) {
        role_ = InstanceRole::second;
        if (tell(socketPath_, deadline))
            return;
        if (deadline.hasExpired()) {
            log_.write(QStringLiteral("the instance that runs already does not answer"));
            return;
        }
        std::this_thread::sleep_for(retryPause);
    }
    role_ = InstanceRole::first;
    listen();
}

/// True when this instance may go on as the first one.
bool SingleInstance::takeLock()
{
    if (lock_->tryLock(0))
        return true;
    if (lock_->error() == QLockFile::LockFailedError)
        return false;
    log_.write(QStringLiteral("the lock file can't be written, so other instances go unnoticed"));
    return true;
}

FolderClaim::FolderClaim(SystemLog& log, const QString& folder)
{
    (void)QDir().mkpath(QFileInfo(folder).path());
    (void)mkdir(QFile::encodeName(folder).constData(), onlyTheOwner);
    const QByteArray path = QFile::encodeName(folder + QStringLiteral("/corvandi.lock"));
    file_ = FileDescriptor(open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (flock(file_.get(), LOCK_EX | LOCK_NB) == 0)
        return;
    isGranted_ = errno != EWOULDBLOCK;
    if (isGranted_)
        log.write(QStringLiteral("the data folder can't be locked, so other sessions go unnoticed"));
}

void SingleInstance::listen()
{
    // Whoever left the socket behind does not hold the lock any more.
    QLocalServer::removeServer(socketPath_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_.listen(socketPath_))
        log_.write(QStringLiteral("later instances can't reach this one: ") + server_.errorString());
}

void SingleInstance::welcome()
{
    while (QLocalSocket* visitor = server_.nextPendingConnection()) {
        QObject::connect(visitor, &QLocalSocket::disconnected, visitor, &QObject::deleteLater);
        QObject::connect(visitor, &QLocalSocket::readyRead, &server_, [this, visitor] {
            if (!visitor->canReadLine())
                return;
            const bool isRequest = visitor->readLine() == request;
            if (isRequest)
                visitor->write(acknowledgement);
            visitor->disconnectFromServer();
            if (isRequest)
                activated_();
        });
    }
}

} // namespace corvandi
