#include "session/x11/windows/x11_application_directory.h"

#include "session/x11/windows/x11_workspace.h"
#include "support/event_loop.h"
#include "system/process/qt_main_queue.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QWidget>

#include <algorithm>

using namespace corvandi;
using corvandi::testing::waitUntil;
using namespace std::chrono_literals;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A window of a program of its own, which is ended with the test.
class Peer {
public:
    explicit Peer(const QStringList& arguments = {})
    {
        process_.setProcessChannelMode(QProcess::SeparateChannels);
        process_.start(text(WINDOW_PEER), arguments);
    }
    ~Peer()
    {
        process_.kill();
        process_.waitForFinished();
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

private:
    QProcess process_;
};

/// Applications of the test's own, so that those of this machine don't matter.
class X11ApplicationDirectoryTest : public ::testing::Test {
protected:
    void install(const char* id, const QByteArray& keys) const
    {
        QFile file(folder.filePath(text(id) + text(".desktop")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + keys);
    }
    /// Made with the first question, so that it reads what the test has installed before.
    [[nodiscard]] X11ApplicationDirectory& directory()
    {
        if (!directory_)
            directory_.emplace(applications(), QStringList{text("GNOME")});
        return *directory_;
    }
    [[nodiscard]] DesktopDatabase& applications()
    {
        if (!applications_)
            applications_.emplace(queue, DesktopPaths{{folder.path()}, {}, {text("de")}});
        return *applications_;
    }
    [[nodiscard]] bool hasRead(size_t count)
    {
        return waitUntil([&] { return applications().index().size() == count; });
    }
    [[nodiscard]] std::optional<RunningApplication> running(const char* bundleID)
    {
        const auto all = directory().runningApplications();
        const auto found = std::find_if(all.begin(), all.end(), [&](const RunningApplication& application) {
            return application.bundleID == text(bundleID);
        });
        return found == all.end() ? std::nullopt : std::optional(*found);
    }
    [[nodiscard]] bool comesToRun(const char* bundleID)
    {
        return waitUntil([&] { return running(bundleID).has_value(); }, 10s);
    }
    /// A window keeps its manners to itself for a moment after it has come.
    [[nodiscard]] bool comesToRunAsAgent(const char* bundleID)
    {
        return waitUntil(
            [&] {
                const auto application = running(bundleID);
                return application && !application->isRegular;
            },
            10s);
    }
    [[nodiscard]] QStringList installedIds()
    {
        QStringList ids;
        for (const auto& application : directory().installedApplications())
            ids.append(*application.bundleID);
        ids.sort();
        return ids;
    }

    QTemporaryDir folder;
    QtMainQueue queue;
    std::optional<DesktopDatabase> applications_;
    std::optional<X11ApplicationDirectory> directory_;
};

} // namespace

TEST_F(X11ApplicationDirectoryTest, AProgramThatRunsInATerminalIsNotOfferedSinceItsWindowIsTheTerminals)
{
    install("org.example.Windows", "Name=Windows\nExec=windows\nTerminal=false\n");
    install("org.example.Lines", "Name=Lines\nExec=lines\nTerminal=true\n");
    ASSERT_TRUE(hasRead(2));
    EXPECT_EQ(installedIds(), QStringList{text("org.example.Windows")});
}

TEST_F(X11ApplicationDirectoryTest, AProgramWithoutADesktopFileIsListedByItsExecutableWithoutAName)
{
    const Peer peer;
    ASSERT_TRUE(comesToRun("window_peer"));
    EXPECT_EQ(running("window_peer")->localizedName, std::nullopt);
    EXPECT_TRUE(running("window_peer")->isRegular);
    EXPECT_EQ(directory().iconOf(text("window_peer")), std::nullopt);
}

TEST_F(X11ApplicationDirectoryTest, AnInstalledApplicationIsListedByItsLocalizedName)
{
    install("org.example.Peer", "Name=Peer\nName[de]=Gefährte\nStartupWMClass=Peer\n");
    const Peer peer({text("--class"), text("Peer")});
    ASSERT_TRUE(comesToRun("org.example.Peer"));
    EXPECT_EQ(running("org.example.Peer")->localizedName, text("Gefährte"));
}

TEST_F(X11ApplicationDirectoryTest, EachWindowIsListedAndGoesWhenItCloses)
{
    auto one = std::make_unique<Peer>();
    const Peer other;
    const auto windows = [&] {
        const auto all = directory().runningApplications();
        return std::count_if(all.begin(), all.end(), [](const RunningApplication& application) {
            return application.bundleID == text("window_peer");
        });
    };
    EXPECT_TRUE(waitUntil([&] { return windows() == 2; }, 10s));
    one.reset();
    EXPECT_TRUE(waitUntil([&] { return windows() == 1; }, 10s));
}

TEST_F(X11ApplicationDirectoryTest, PartsOfADesktopAreNoOrdinaryApplications)
{
    for (const char* type : {"DOCK", "UTILITY", "SPLASH"}) {
        const Peer peer({text("--gtk-id"), text(type), text("--type"), text(type)});
        EXPECT_TRUE(comesToRunAsAgent(type)) << type;
    }
}

TEST_F(X11ApplicationDirectoryTest, TheDesktopItselfIsTheFileManagerButNotAnOrdinaryApplication)
{
    const Peer peer({text("--type-desktop")});
    EXPECT_TRUE(comesToRunAsAgent("com.apple.finder"));
}

TEST_F(X11ApplicationDirectoryTest, ADialogIsAsOrdinaryAsAnyWindow)
{
    const Peer peer({text("--gtk-id"), text("Dialog"), text("--type"), text("DIALOG")});
    ASSERT_TRUE(comesToRun("Dialog"));
    EXPECT_TRUE(running("Dialog")->isRegular);
}

TEST_F(X11ApplicationDirectoryTest, AWindowThatStaysOutOfTheTaskbarIsNotOrdinary)
{
    const Peer peer({text("--gtk-id"), text("Quiet"), text("--skip-taskbar")});
    EXPECT_TRUE(comesToRunAsAgent("Quiet"));
}

TEST_F(X11ApplicationDirectoryTest, AWindowOfThisProcessIsThisPrograms)
{
    QWidget own;
    own.show();
    EXPECT_TRUE(comesToRun("io.corvandi.Corvandi"));
}

TEST_F(X11ApplicationDirectoryTest, WhatAMenuShowsIsInstalled)
{
    install("shown", "Name=Shown\nIcon=shown-icon\n");
    install("no-display", "Name=a\nNoDisplay=true\n");
    install("hidden", "Name=a\nHidden=true\n");
    install("missing", "Name=a\nTryExec=/no/such/program\nIcon=x\n");
    install("elsewhere", "Name=a\nOnlyShowIn=KDE;\n");
    install("here", "Name=Here\nOnlyShowIn=GNOME;\n");
    install("nameless", "");
    ASSERT_TRUE(hasRead(6));
    EXPECT_EQ(installedIds(), (QStringList{text("here"), text("shown")}));
    EXPECT_EQ(directory().iconOf(text("shown")), text("shown-icon"));
    EXPECT_EQ(directory().iconOf(text("SHOWN")), std::nullopt);
    EXPECT_EQ(directory().iconOf(text("here")), std::nullopt) << "it has none";
    EXPECT_EQ(directory().iconOf(text("missing")), std::nullopt) << "it is not installed";
}

TEST_F(X11ApplicationDirectoryTest, TheFileManagerHasItsOwnIdentifierNameAndIcon)
{
    install("files", "Name=Files\nIcon=folder\nMimeType=inode/directory;\nCategories=FileManager;\n");
    ASSERT_TRUE(hasRead(1));
    EXPECT_EQ(installedIds(), QStringList{fileManagerIdentifier});
    EXPECT_EQ(directory().iconOf(fileManagerIdentifier), text("folder"));
}

TEST_F(X11ApplicationDirectoryTest, WithoutAFileManagerThereIsNoIconOfIt)
{
    EXPECT_EQ(directory().iconOf(fileManagerIdentifier), std::nullopt);
}

TEST_F(X11ApplicationDirectoryTest, ItsIdentifiersAreThoseOfTheFrontmostApplication)
{
    X11Workspace workspace(queue);
    X11ApplicationDirectory ofWorkspace(workspace.applications());
    QProcess xterm;
    xterm.start(text("xterm"), QStringList{});
    ASSERT_TRUE(waitUntil([&] { return workspace.frontmostApplication() == text("debian-xterm"); }, 10s));
    const auto all = ofWorkspace.runningApplications();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const RunningApplication& application) {
        return application.bundleID == text("debian-xterm") && application.localizedName &&
               application.isRegular;
    }));
    xterm.kill();
    xterm.waitForFinished();
}

TEST_F(X11ApplicationDirectoryTest, TwentyWindowsTakeAFewMilliseconds)
{
    std::vector<std::unique_ptr<QWidget>> windows;
    for (int i = 0; i < 20; ++i) {
        windows.push_back(std::make_unique<QWidget>());
        windows.back()->show();
    }
    ASSERT_TRUE(waitUntil([&] { return directory().runningApplications().size() >= windows.size(); }, 10s));
    std::vector<qint64> micros;
    for (int i = 0; i < 100; ++i) {
        QElapsedTimer clock;
        clock.start();
        (void)directory().runningApplications();
        micros.push_back(clock.nsecsElapsed() / 1000);
    }
    std::sort(micros.begin(), micros.end());
    std::printf("20 windows: median %lld us, longest %lld us\n", static_cast<long long>(micros[50]),
                static_cast<long long>(micros[99]));
    EXPECT_LT(micros[50], 5000);
}
