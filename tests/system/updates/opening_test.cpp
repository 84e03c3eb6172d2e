#include "update_fixture.h"

#include <QFile>

#include <sys/stat.h>

#include <csignal>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using Kind = UpdateFailure::Kind;

/// Real xdg-open, on a desktop whose applications are the test's.
class UpdateOpeningTest : public UpdateTest {
protected:
    UpdateOpeningTest()
    {
        // Whatever desktop the tests run on: xdg-open shall look nowhere else than here.
        for (const char* name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                                 "GNOME_DESKTOP_SESSION_ID", "DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY"})
            setVariable(name, {});
        setVariable("DISPLAY", ":nowhere");
        setVariable("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
        setVariable("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
        write(QStringLiteral("config/mimeapps.list"), "");
        write(QStringLiteral("data/applications/mimeapps.list"), "");
        serveRelease();
    }

    ~UpdateOpeningTest() override
    {
        for (const auto& [name, value] : former_)
            put(name, value);
    }

    /// For this test; an empty value removes the variable.
    void setVariable(const char* name, const QByteArray& value)
    {
        former_.emplace(name, qgetenv(name));
        put(name, value);
    }

    void write(const QString& name, const QByteArray& content, mode_t mode = S_IRUSR | S_IWUSR)
    {
        const QString path = home.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0);
    }
    /// An installer that notes what it was given and how its signals stand, and then runs `script`.
    void haveInstaller(const QByteArray& script = "")
    {
        const QByteArray path = QFile::encodeName(home.filePath(QStringLiteral("installer")));
        write(QStringLiteral("installer"),
              "#!/bin/sh\ngrep SigBlk /proc/self/status >\"" + path + ".signals\"\necho \"$1\" >\"" + path +
                  ".new\" && mv \"" + path + ".new\" \"" + path + ".given\"\n" + script,
              S_IRWXU);
        write(QStringLiteral("data/applications/installer.desktop"),
              "[Desktop Entry]\nType=Application\nName=Installer\nExec=" + path +
                  " %f\nMimeType=application/vnd.debian.binary-package;\n");
        write(QStringLiteral("config/mimeapps.list"),
              "[Default Applications]\napplication/vnd.debian.binary-package=installer.desktop\n");
    }
    [[nodiscard]] QString given() const { return contentOf(QStringLiteral("installer.given")); }
    [[nodiscard]] QString contentOf(const QString& name) const
    {
        QFile file(home.filePath(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    std::unique_ptr<UpdatePackage> download()
    {
        auto result = fetchPackage(release());
        EXPECT_TRUE(std::holds_alternative<std::unique_ptr<UpdatePackage>>(result));
        return std::get<std::unique_ptr<UpdatePackage>>(std::move(result));
    }
    /// Opens it and waits for the outcome.
    std::optional<UpdateFailure> open(UpdatePackage& downloaded)
    {
        std::optional<std::optional<UpdateFailure>> outcome;
        const auto opening =
            downloaded.open([&](const std::optional<UpdateFailure>& failure) { outcome = failure; });
        if (!waitUntil([&] { return outcome.has_value(); }, 20s))
            return UpdateFailure{Kind::unreachable, QStringLiteral("the test got no answer")};
        return *outcome;
    }
    [[nodiscard]] QString packagePath() const { return folder() + QStringLiteral("/corvandi-1.2.0.deb"); }

private:
    static void put(const QByteArray& name, const QByteArray& value)
    {
        if (value.isEmpty())
            qunsetenv(name.constData());
        else
            qputenv(name.constData(), value);
    }

    std::map<QByteArray, QByteArray> former_;
};

TEST_F(UpdateOpeningTest, NothingIsOpenedByDownloading)
{
    haveInstaller();
    const auto downloaded = download();
    runFor(300ms);
    EXPECT_TRUE(given().isEmpty());
}

TEST_F(UpdateOpeningTest, TheInstallerGetsTheVerifiedFile)
{
    haveInstaller();
    auto downloaded = download();
    const auto failure = open(*downloaded);
    EXPECT_FALSE(failure) << failure->detail.toStdString();
    EXPECT_EQ(given(), packagePath());

    // It stays for the installer, also when nobody here needs it any more.
    downloaded.reset();
    runFor(100ms);
    EXPECT_TRUE(QFile::exists(packagePath()));
}

TEST_F(UpdateOpeningTest, TheInstallerCanBeEndedThoughThisProgramBlocksSignals)
{
    haveInstaller();
    sigset_t blocked;
    sigset_t former;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &former), 0);
    const auto downloaded = download();
    EXPECT_FALSE(open(*downloaded));
    EXPECT_EQ(contentOf(QStringLiteral("installer.signals")), QStringLiteral("SigBlk:\t0000000000000000"));
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

TEST_F(UpdateOpeningTest, AnInstallerThatStaysCountsAsOpen)
{
    haveInstaller("exec sleep 10\n");
    const auto downloaded = download();
    EXPECT_FALSE(open(*downloaded));
    EXPECT_EQ(given(), packagePath());
}

TEST_F(UpdateOpeningTest, AFileThatHasChangedMeanwhileIsNotOpenedAndRemoved)
{
    haveInstaller();
    auto downloaded = download();
    QFile file(packagePath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(1000) && file.write("evil") == 4);
    file.close();

    const auto failure = open(*downloaded);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, Kind::tampered);
    EXPECT_TRUE(given().isEmpty());
    downloaded.reset();
    EXPECT_TRUE(waitUntil([this] { return files().isEmpty(); }));
}

TEST_F(UpdateOpeningTest, AFileThatHasGrownIsNotOpened)
{
    haveInstaller();
    const auto downloaded = download();
    QFile file(packagePath());
    ASSERT_TRUE(file.open(QIODevice::Append) && file.write("x") == 1);
    file.close();
    EXPECT_EQ(open(*downloaded)->kind, Kind::tampered);
    EXPECT_TRUE(given().isEmpty());
}

TEST_F(UpdateOpeningTest, AFileThatHasGoneIsReported)
{
    haveInstaller();
    const auto downloaded = download();
    ASSERT_TRUE(QFile::remove(packagePath()));
    EXPECT_EQ(open(*downloaded)->kind, Kind::notStored);
}

TEST_F(UpdateOpeningTest, ALinkInItsPlaceIsNotOpened)
{
    haveInstaller();
    const auto downloaded = download();
    const QString elsewhere = home.filePath(QStringLiteral("elsewhere.deb"));
    ASSERT_TRUE(QFile::rename(packagePath(), elsewhere) && QFile::link(elsewhere, packagePath()));
    EXPECT_EQ(open(*downloaded)->kind, Kind::notStored);
    EXPECT_TRUE(given().isEmpty());
}

TEST_F(UpdateOpeningTest, WithoutXdgOpenTheFileIsKeptAndNamed)
{
    setVariable("PATH", QFile::encodeName(home.path()));
    auto downloaded = download();
    const auto failure = open(*downloaded);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, Kind::notOpened);
    EXPECT_TRUE(failure->detail.contains(packagePath()));
    downloaded.reset();
    runFor(100ms);
    EXPECT_TRUE(QFile::exists(packagePath()));
}

TEST_F(UpdateOpeningTest, AnInstallerThatFailsIsReported)
{
    // An xdg-open that fails as the real one does when no application opens the file.
    write(QStringLiteral("xdg-open"), "#!/bin/sh\nexit 3\n", S_IRWXU);
    setVariable("PATH", QFile::encodeName(home.path()) + ":" + qgetenv("PATH"));
    const auto downloaded = download();
    const auto failure = open(*downloaded);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, Kind::notOpened);
    EXPECT_TRUE(failure->detail.contains(QStringLiteral("status 3")));
}

} // namespace
} // namespace corvandi
