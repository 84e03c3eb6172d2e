#include "session/x11/windows/x11_workspace.h"

#include "session/x11/xcb_connection.h"
#include "support/event_loop.h"
#include "system/process/qt_main_queue.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QWidget>

#include <algorithm>
#include <unistd.h>

using namespace corvandi;
using corvandi::testing::waitUntil;
using namespace std::chrono_literals;

namespace {

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// A program that is ended with the test.
class Program {
public:
    Program(const QString& name, const QStringList& arguments)
    {
        process_.setProcessChannelMode(QProcess::SeparateChannels);
        process_.start(name, arguments);
    }
    ~Program() { end(); }

    [[nodiscard]] bool hasShown()
    {
        output_ += process_.readAllStandardOutput();
        return output_.contains("shown");
    }
    void end()
    {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
    QByteArray output_;
};

class X11WorkspaceTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        QFile::remove(userEntry());
        QFile::remove(userDefaults());
    }

    [[nodiscard]] static QString applicationsFolder()
    {
        return qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications");
    }
    [[nodiscard]] static QString userEntry()
    {
        return applicationsFolder() + QStringLiteral("/org.example.Peer.desktop");
    }
    static void installUserEntry(const QByteArray& keys)
    {
        ASSERT_TRUE(QDir().mkpath(applicationsFolder()));
        QFile file(userEntry());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Peer\nExec=peer\n" + keys);
    }
    [[nodiscard]] static QString userDefaults()
    {
        return qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/mimeapps.list");
    }
    static void openFoldersWith(const QByteArray& desktopFile)
    {
        QFile file(userDefaults());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Default Applications]\ninode/directory=" + desktopFile + '\n');
    }
    bool showsAs(const QString& identifier)
    {
        return waitUntil([&] { return workspace.frontmostApplication() == identifier; }, 10s);
    }
    static bool isShown(Program& program)
    {
        return waitUntil([&] { return program.hasShown(); }, 10s);
    }

    QtMainQueue queue;
    X11Workspace workspace{queue};
};

} // namespace

TEST_F(X11WorkspaceTest, WithoutAnyWindowThereIsNoApplication)
{
    EXPECT_TRUE(waitUntil([&] { return !workspace.frontmostApplication(); }));
    EXPECT_EQ(workspace.frontmostKind(), ApplicationKind::ordinary);
}

TEST_F(X11WorkspaceTest, ATerminalIsTheOneOfItsDesktopFile)
{
    Program xterm(text("xterm"), {});
    EXPECT_TRUE(showsAs(text("debian-xterm")));
    EXPECT_EQ(workspace.frontmostKind(), ApplicationKind::terminalWithoutPaste);
}

TEST_F(X11WorkspaceTest, AGtkProgramIsItsDesktopFileOrWithoutOneItsExecutable)
{
    // It has come with one since its fourth version.
    const bool hasEntry = QFile::exists(text("/usr/share/applications/org.gnome.Zenity.desktop"));
    Program zenity(text("zenity"), {text("--entry")});
    EXPECT_TRUE(showsAs(hasEntry ? text("org.gnome.Zenity") : text("zenity")));
    EXPECT_EQ(workspace.frontmostKind(), ApplicationKind::ordinary);
}

TEST_F(X11WorkspaceTest, AQtProgramWithoutADesktopFileIsItsExecutable)
{
    Program peer(text(WINDOW_PEER), {});
    ASSERT_TRUE(isShown(peer));
    EXPECT_EQ(workspace.frontmostApplication(), text("window_peer"));
}

TEST_F(X11WorkspaceTest, AGtkApplicationIdentifierIsTheIdentifier)
{
    Program peer(text(WINDOW_PEER), {text("--gtk-id"), text("org.example.Notes")});
    ASSERT_TRUE(isShown(peer));
    EXPECT_EQ(workspace.frontmostApplication(), text("org.example.Notes"));
}

TEST_F(X11WorkspaceTest, TheDesktopItselfIsTheFileManager)
{
    Program peer(text(WINDOW_PEER), {text("--type-desktop")});
    ASSERT_TRUE(isShown(peer));
    EXPECT_EQ(workspace.frontmostApplication(), fileManagerIdentifier);
}

TEST_F(X11WorkspaceTest, AWindowOfThisProcessIsThisProgram)
{
    QWidget own;
    own.show();
    EXPECT_TRUE(showsAs(text("io.corvandi.Corvandi")));
    EXPECT_EQ(workspace.ownIdentifier(), workspace.frontmostApplication());
}

TEST_F(X11WorkspaceTest, AnApplicationThatIsInstalledMeanwhileIsFound)
{
    Program peer(text(WINDOW_PEER), {text("--class"), text("Peer")});
    ASSERT_TRUE(isShown(peer));
    EXPECT_EQ(workspace.frontmostApplication(), text("window_peer"));

    installUserEntry("StartupWMClass=Peer\nCategories=TerminalEmulator;\n");
    EXPECT_TRUE(showsAs(text("org.example.Peer")));
    EXPECT_EQ(workspace.frontmostKind(), ApplicationKind::terminal);

    ASSERT_TRUE(QFile::remove(userEntry()));
    EXPECT_TRUE(showsAs(text("window_peer")));
}

TEST_F(X11WorkspaceTest, TheDefaultHandlerOfFoldersIsTheFileManager)
{
    Program peer(text(WINDOW_PEER), {text("--class"), text("Peer")});
    ASSERT_TRUE(isShown(peer));
    installUserEntry("StartupWMClass=Peer\nMimeType=inode/directory;\nCategories=FileManager;\n");
    EXPECT_TRUE(showsAs(fileManagerIdentifier));
}

TEST_F(X11WorkspaceTest, TheFileManagerThatOpensFoldersIsNotJustAnyApplication)
{
    openFoldersWith("pcmanfm.desktop");
    const Program files(text("pcmanfm"), {QDir::homePath()});
    EXPECT_TRUE(showsAs(fileManagerIdentifier));
}

TEST_F(X11WorkspaceTest, AFileManagerWhoseWindowsBearAnotherNameThanItsDesktopFileIsKnown)
{
    openFoldersWith("thunar.desktop");
    const Program files(text("thunar"), {QDir::homePath()});
    EXPECT_TRUE(showsAs(fileManagerIdentifier));
}

TEST_F(X11WorkspaceTest, AFileManagerThatDoesNotOpenFoldersIsAnApplicationLikeOthers)
{
    openFoldersWith("thunar.desktop");
    const Program files(text("pcmanfm"), {QDir::homePath()});
    EXPECT_TRUE(showsAs(text("pcmanfm")));
}

TEST_F(X11WorkspaceTest, TheDesktopThatAFileManagerDrawsIsTheFileManagerWhicheverOpensFolders)
{
    openFoldersWith("thunar.desktop");
    const Program desktop(text("pcmanfm"), {text("--desktop")});
    EXPECT_TRUE(showsAs(fileManagerIdentifier));
}

TEST_F(X11WorkspaceTest, AWindowThatHasGoneGivesNothing)
{
    // As if the window had closed between the question for it and those about it: the window manager's
    // word names a window that does not exist any more.
    const XcbConnection x;
    const xcb_window_t gone = xcb_generate_id(x.get());
    const xcb_atom_t active = x.atom("_NET_ACTIVE_WINDOW");
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), active, XCB_ATOM_WINDOW, 32, 1, &gone);
    ASSERT_EQ(wordsOf(x, requestProperty(x, x.root(), active)), std::vector<uint32_t>{gone});
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_EQ(workspace.frontmostKind(), ApplicationKind::ordinary);
}

TEST_F(X11WorkspaceTest, AskingWhileAWindowIsKilledNeverFails)
{
    auto peer = std::make_unique<Program>(text(WINDOW_PEER), QStringList{});
    ASSERT_TRUE(isShown(*peer));
    peer.reset();
    for (int i = 0; i < 500; ++i) {
        const auto id = workspace.frontmostApplication();
        EXPECT_TRUE(!id || id == text("window_peer")) << id->toStdString();
    }
    EXPECT_TRUE(waitUntil([&] { return !workspace.frontmostApplication(); }));
}

TEST_F(X11WorkspaceTest, ACallTakesAtMostAFewMilliseconds)
{
    Program peer(text(WINDOW_PEER), {});
    ASSERT_TRUE(isShown(peer));
    X11Workspace fresh(queue);
    QElapsedTimer clock;
    clock.start();
    (void)fresh.frontmostApplication();
    const qint64 first = clock.nsecsElapsed() / 1000;

    std::vector<qint64> micros;
    for (int i = 0; i < 200; ++i) {
        clock.restart();
        (void)fresh.frontmostApplication();
        micros.push_back(clock.nsecsElapsed() / 1000);
    }
    std::sort(micros.begin(), micros.end());
    RecordProperty("first_us", std::to_string(first));
    RecordProperty("median_us", std::to_string(micros[100]));
    std::printf("first %lld us, median %lld us, 99th of 100 %lld us\n", static_cast<long long>(first),
                static_cast<long long>(micros[100]), static_cast<long long>(micros[198]));
    EXPECT_LT(micros[100], 5000);
}
