#include "update_fixture.h"

#include <QFile>
#include <QFileInfo>

#include <ctime>
#include <sys/stat.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using Kind = UpdateFailure::Kind;

/// What the calling thread has worked so far; other programs don't count.
std::chrono::nanoseconds ownProcessorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

class UpdatePackageTest : public UpdateTest {
protected:
    void servePackage(const QByteArray& content) { server.serve(QStringLiteral("/corvandi.deb"), content); }
    void answerPackage(HttpServer::Answer answer)
    {
        server.answer(QStringLiteral("/corvandi.deb"), std::move(answer));
    }
    void expectFailure(Kind kind)
    {
        EXPECT_EQ(packageFailure(release()).kind, kind);
        EXPECT_TRUE(files().isEmpty());
    }
    [[nodiscard]] QString packagePath() const { return folder() + QStringLiteral("/corvandi-1.2.0.deb"); }
    [[nodiscard]] QByteArray stored() const
    {
        QFile file(packagePath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(UpdatePackageTest, AGoodOneIsStoredForTheUserAloneAndIsNotExecutable)
{
    servePackage(package);
    const auto result = fetchPackage(release());

    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<UpdatePackage>>(result));
    EXPECT_EQ(stored(), package);
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(packagePath()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat(QFile::encodeName(folder()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST_F(UpdatePackageTest, ProgressRisesToTheWholeLength)
{
    servePackage(package);
    const auto result = fetchPackage(release());

    ASSERT_FALSE(progresses.empty());
    int64_t last = 0;
    for (const DownloadProgress& progress : progresses) {
        EXPECT_GT(progress.received, last);
        EXPECT_EQ(progress.total, package.size());
        last = progress.received;
    }
    EXPECT_EQ(last, package.size());
}

TEST_F(UpdatePackageTest, IsRemovedWhenNobodyWantsIt)
{
    servePackage(package);
    auto result = fetchPackage(release());
    EXPECT_EQ(files().size(), 1);
    result = UpdateFailure{};
    EXPECT_TRUE(waitUntil([this] { return files().isEmpty(); }));
}

TEST_F(UpdatePackageTest, IsRemovedWithTheSource)
{
    servePackage(package);
    {
        LinuxUpdateSource other(UpdateConfiguration::parse(feedUrl().toString(), key, log), queue, folder());
        std::unique_ptr<UpdatePackage> downloaded;
        const auto request = other.fetchPackage(
            release(), [](DownloadProgress) {},
            [&](UpdateResult<std::unique_ptr<UpdatePackage>> found) {
                downloaded = std::get<std::unique_ptr<UpdatePackage>>(std::move(found));
            });
        ASSERT_TRUE(waitUntil([&] { return downloaded != nullptr; }));
        EXPECT_EQ(files().size(), 1);
    }
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(UpdatePackageTest, AnotherFileOfTheSameLengthIsTampered)
{
    QByteArray other = package;
    other[other.size() / 2] = static_cast<char>(other[other.size() / 2] ^ 1);
    servePackage(other);
    expectFailure(Kind::tampered);
}

TEST_F(UpdatePackageTest, ATruncatedOneIsIncomplete)
{
    answerPackage([this](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: " + QByteArray::number(package.size()) + "\r\n") +
                     package.left(package.size() / 2));
        socket.disconnectFromHost();
    });
    expectFailure(Kind::incomplete);
}

TEST_F(UpdatePackageTest, ATruncatedOneWithoutALengthIsIncomplete)
{
    answerPackage([this](QTcpSocket& socket) {
        socket.write(head("200 OK", "Connection: close\r\n") + package.chopped(1));
        socket.disconnectFromHost();
    });
    expectFailure(Kind::incomplete);
}

TEST_F(UpdatePackageTest, AnEmptyOneIsIncomplete)
{
    servePackage({});
    expectFailure(Kind::incomplete);
}

TEST_F(UpdatePackageTest, OneByteMoreThanSignedIsTampered)
{
    servePackage(package + 'x');
    expectFailure(Kind::tampered);
}

TEST_F(UpdatePackageTest, AnEndlessOneIsGivenUpAtItsSignedLength)
{
    qint64 sent = 0;
    answerPackage([&sent](QTcpSocket& socket) {
        socket.write(head("200 OK"));
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&socket, &sent](qint64 count) {
            sent += count;
            socket.write(QByteArray(100'000, 'x'));
        });
    });
    expectFailure(Kind::tampered);
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0; }));
    // What the sockets and the network's own buffers hold comes on top.
    EXPECT_LT(sent, package.size() + 20'000'000);
}

TEST_F(UpdatePackageTest, AConnectionThatIsClosedIsReported)
{
    answerPackage([](QTcpSocket& socket) { socket.abort(); });
    expectFailure(Kind::unreachable);
}

TEST_F(UpdatePackageTest, AMissingOneIsReported)
{
    server.refuse(QStringLiteral("/corvandi.deb"), "404 Not Found");
    expectFailure(Kind::refused);
}

TEST_F(UpdatePackageTest, AServerThatStopsHalfWayIsGivenUp)
{
    patience(300ms, 10s);
    answerPackage([this](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: " + QByteArray::number(package.size()) + "\r\n") +
                     package.left(1000));
    });
    expectFailure(Kind::timedOut);
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0; }));
}

TEST_F(UpdatePackageTest, ASlowDripIsGivenUpWhenItHasTakenTooLong)
{
    patience(2s, 600ms);
    answerPackage([this](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: " + QByteArray::number(package.size()) + "\r\n"));
        auto* drip = new QTimer(&socket);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write("!"); });
        drip->start(20ms);
    });
    expectFailure(Kind::timedOut);
}

TEST_F(UpdatePackageTest, CancellingHalfWayClosesTheConnectionAndLeavesNoFile)
{
    answerPackage([this](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: " + QByteArray::number(package.size()) + "\r\n") +
                     package.left(package.size() / 2));
    });
    bool isAnswered = false;
    auto request = source().fetchPackage(
        release(), [this](DownloadProgress progress) { progresses.push_back(progress); },
        [&](const UpdateResult<std::unique_ptr<UpdatePackage>>&) { isAnswered = true; });
    ASSERT_TRUE(waitUntil([this] { return !progresses.empty(); }));
    EXPECT_EQ(files().size(), 1);
    request.reset();

    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0 && files().isEmpty(); }));
    EXPECT_FALSE(isAnswered);
}

TEST_F(UpdatePackageTest, CancellingAtAnyMomentLeavesNoFile)
{
    servePackage(package);
    for (int turns = 0; turns < 40; ++turns) {
        auto request = source().fetchPackage(
            release(), [](DownloadProgress) {}, [](const UpdateResult<std::unique_ptr<UpdatePackage>>&) {});
        for (int i = 0; i < turns; ++i)
            QCoreApplication::processEvents();
        request.reset();
    }
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0 && files().isEmpty(); }));
}

TEST_F(UpdatePackageTest, WhatAFormerRunHasLeftIsRemoved)
{
    ASSERT_TRUE(QDir().mkpath(folder()));
    for (const char* name : {"/corvandi-1.2.0.deb", "/corvandi-0.9.deb", "/.hidden"}) {
        QFile leftover(folder() + QLatin1String(name));
        ASSERT_TRUE(leftover.open(QIODevice::WriteOnly));
    }
    servePackage(package);
    const auto result = fetchPackage(release());
    EXPECT_EQ(files(), QStringList{QStringLiteral("corvandi-1.2.0.deb")});
    EXPECT_EQ(stored(), package);
}

TEST_F(UpdatePackageTest, ALinkInItsPlaceIsNotFollowed)
{
    ASSERT_TRUE(QDir().mkpath(folder()));
    const QString precious = home.filePath(QStringLiteral("precious"));
    QFile file(precious);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("precious") == 8);
    file.close();
    ASSERT_TRUE(QFile::link(precious, packagePath()));
    servePackage(package);
    const auto result = fetchPackage(release());

    EXPECT_TRUE(std::holds_alternative<std::unique_ptr<UpdatePackage>>(result));
    EXPECT_FALSE(QFileInfo(packagePath()).isSymLink());
    EXPECT_EQ(QFileInfo(precious).size(), 8);
}

TEST_F(UpdatePackageTest, AFolderThatIsALinkIsRefused)
{
    const QString elsewhere = home.filePath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere) && QDir().mkpath(home.filePath(QStringLiteral("cache"))));
    ASSERT_TRUE(QFile::link(elsewhere, folder()));
    servePackage(package);
    EXPECT_EQ(packageFailure(release()).kind, Kind::notStored);
    EXPECT_TRUE(QDir(elsewhere).isEmpty());
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(UpdatePackageTest, AFolderThatCannotBeMadeIsReported)
{
    QFile file(home.filePath(QStringLiteral("cache")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    servePackage(package);
    EXPECT_EQ(packageFailure(release()).kind, Kind::notStored);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(UpdatePackageTest, TheMainThreadDoesNoneOfTheWork)
{
    package = QByteArray(60'000'000, 'p');
    servePackage(package);
    const Release wanted = release();
    std::optional<UpdateResult<std::unique_ptr<UpdatePackage>>> result;

    auto start = ownProcessorTime();
    const auto request = source().fetchPackage(
        wanted, [](DownloadProgress) {},
        [&](UpdateResult<std::unique_ptr<UpdatePackage>> found) { result = std::move(found); });
    EXPECT_LT(ownProcessorTime() - start, 10ms);
    // Meanwhile this thread is the server, so nothing is measured here.
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }, 30s));
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<UpdatePackage>>(*result));

    start = ownProcessorTime();
    result.reset();
    EXPECT_LT(ownProcessorTime() - start, 10ms);
}

} // namespace
} // namespace corvandi
