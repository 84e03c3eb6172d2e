#include "pasteboard_fixture.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

TEST_F(PasteboardTest, OtherProgramsGetTheTextInAllItsNames)
{
    const QByteArray german = "Gr\xc3\xbc\xc3\x9f"
                              "e";
    ASSERT_TRUE(write(QString::fromUtf8(german)));
    for (const char* target : {"UTF8_STRING", "text/plain", "text/plain;charset=utf-8"})
        EXPECT_EQ(asSeenByOthers(text(target)), german) << target;
    EXPECT_EQ(asSeenByOthers(text("STRING")), QByteArray("Gr\xfc\xdf"
                                                         "e"));
}

TEST_F(PasteboardTest, ConcealedContentCarriesTheHintForClipboardManagers)
{
    ASSERT_TRUE(write(text("dictated")));
    EXPECT_FALSE(formsSeenByOthers().contains("x-kde-passwordManagerHint"));
    ASSERT_TRUE(pasteboard.setString({}, pasteboard_type::concealed));
    EXPECT_TRUE(formsSeenByOthers().contains("org.nspasteboard.ConcealedType"));
    EXPECT_TRUE(formsSeenByOthers().contains("x-kde-passwordManagerHint"));
    EXPECT_EQ(asSeenByOthers(text("x-kde-passwordManagerHint")), QByteArray("secret"));
    EXPECT_EQ(asSeenByOthers(pasteboard_type::concealed), QByteArray());
    EXPECT_EQ(asSeenByOthers(text("UTF8_STRING")), QByteArray("dictated"));
}

TEST_F(PasteboardTest, ClearedContentHasNoText)
{
    ASSERT_TRUE(write(text("old")));
    pasteboard.clearContents();
    for (const char* form : {"UTF8_STRING", "STRING", "text/plain"})
        EXPECT_FALSE(formsSeenByOthers().contains(form)) << form;
    EXPECT_EQ(readNow(), std::nullopt);
}

TEST_F(PasteboardTest, AFormOfAnUnknownTypeIsRefused)
{
    pasteboard.clearContents();
    EXPECT_FALSE(pasteboard.setString(text("x"), text("public.tiff")));
}

TEST_F(PasteboardTest, OwnContentIsReadAtOnce)
{
    ASSERT_TRUE(write(text("mine")));
    const auto reading = startReading();
    ASSERT_TRUE(reading->has_value());
    EXPECT_EQ(**reading, text("mine"));
}

TEST_F(PasteboardTest, TheClipboardCanBeTakenBackFromAnotherProgram)
{
    for (int i = 0; i < 5; ++i) {
        Peer other({text("own"), text("UTF8_STRING"), text("theirs")});
        ASSERT_TRUE(other.isReady());
        ASSERT_TRUE(write(text("mine")));
        EXPECT_EQ(asSeenByOthers(text("UTF8_STRING")), QByteArray("mine"));
    }
}

TEST_F(PasteboardTest, AWriteRightBehindAnotherProgramsCopyTellsWhetherItHasWon)
{
    for (int i = 0; i < 5; ++i) {
        Peer other({text("own"), text("UTF8_STRING"), text("theirs")});
        ASSERT_TRUE(other.isReadyBeforeTheNextTurn());
        const bool hasWon = writeAtOnce(text("mine"));
        EXPECT_EQ(asSeenByOthers(text("UTF8_STRING")), QByteArray(hasWon ? "mine" : "theirs"));
    }
}

TEST_F(PasteboardTest, TheCountStaysWhileNobodyWrites)
{
    ASSERT_TRUE(write(text("mine")));
    const auto count = pasteboard.changeCount();
    (void)asSeenByOthers(text("UTF8_STRING"));
    ASSERT_TRUE(pasteboard.setString({}, pasteboard_type::concealed));
    EXPECT_EQ(pasteboard.changeCount(), count);
}

TEST_F(PasteboardTest, ACopyInAWindowOfThisProgramIsReadLikeAnyOther)
{
    ASSERT_TRUE(write(text("dictated")));
    const auto noted = pasteboard.changeCount();
    QGuiApplication::clipboard()->setText(text("from a text field"));
    EXPECT_NE(pasteboard.changeCount(), noted);
    EXPECT_EQ(readNow(), text("from a text field"));
}

TEST_F(PasteboardTest, AtANormalExitAClipboardManagerIsGivenTheText)
{
    Peer manager({text("manage")});
    ASSERT_TRUE(manager.isReady());
    QProcess leaver;
    leaver.start(text(CLIPBOARD_LEAVER), {text("kept")});
    ASSERT_TRUE(waitUntil([&] { return leaver.state() == QProcess::NotRunning; }, 10s));
    EXPECT_EQ(leaver.exitCode(), 0);
    EXPECT_TRUE(waitUntil([&] { return manager.output().contains("saved:kept\n"); }));
}
