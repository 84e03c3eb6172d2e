#include "pasteboard_fixture.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Two, three and four byte characters, of a length that parts of no usual size are a multiple of.
const QString sample = QString::fromUtf8("abc \xc3\xa4 \xe2\x82\xac \xf0\x9f\x98\x80 z");

/// The longest time that the event loop was held up between two of its turns.
class StallMeter {
public:
    StallMeter()
    {
        clock_.start();
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            longest_ = std::max(longest_, std::chrono::nanoseconds(clock_.nsecsElapsed()));
            clock_.restart();
        });
        // Idle in between: the kernel would take the processor from a program that spins.
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(1ms);
    }
    [[nodiscard]] std::chrono::microseconds longest() const
    {
        return std::chrono::duration_cast<std::chrono::microseconds>(longest_);
    }

private:
    QElapsedTimer clock_;
    QTimer timer_;
    std::chrono::nanoseconds longest_{};
};

/// The longest stall while `work` runs the event loop, in the best of five runs: other programs of the
/// machine may take the processor away in one of them, but what we do ourselves shows in each.
template<class Work>
std::chrono::microseconds leastStallOfSome(Work work)
{
    auto least = std::chrono::microseconds::max();
    for (int run = 0; run < 5; ++run) {
        const StallMeter stalls;
        work();
        least = std::min(least, stalls.longest());
    }
    return least;
}

} // namespace

TEST_F(PasteboardTest, AnEmptyTextCountsAsNone)
{
    Peer owner({text("own"), text("UTF8_STRING"), text("")});
    ASSERT_TRUE(owner.isReady());
    EXPECT_EQ(readNow(), std::nullopt);
}

TEST_F(PasteboardTest, AnImageOfAQtProgramIsNoText)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(image);
    EXPECT_EQ(readNow(), std::nullopt);
}

TEST_F(PasteboardTest, AnOwnerWithoutUtf8IsReadAsLatin1)
{
    // The argument reaches the owner as UTF-8; it offers the very same bytes as Latin-1.
    Peer owner({text("own"), text("STRING"), QString::fromUtf8("\xc3\xa4")});
    ASSERT_TRUE(owner.isReady());
    EXPECT_EQ(readNow(), QString::fromLatin1("\xc3\xa4"));
}

TEST_F(PasteboardTest, AnImageAloneIsNoText)
{
    Peer owner({text("own"), text("image/png"), text("\x89PNG")});
    ASSERT_TRUE(owner.isReady());
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(readNow(), std::nullopt);
    EXPECT_LT(clock.elapsed(), 250) << "it was refused, not timed out";
}

TEST_F(PasteboardTest, AClipboardWithoutOwnerIsNoText)
{
    {
        Peer owner({text("own"), text("UTF8_STRING"), text("gone")});
        ASSERT_TRUE(owner.isReady());
    }
    EXPECT_EQ(readNow(), std::nullopt);
}

TEST_F(PasteboardTest, OneMegabyteComesInPartsWithoutHoldingUpTheEventLoop)
{
    const int repetitions = 1000000 / static_cast<int>(sample.toUtf8().size()) + 1;
    Peer owner({text("own-many"), QString::number(repetitions), sample});
    ASSERT_TRUE(owner.isReady());
    const auto stall = leastStallOfSome([&] { EXPECT_EQ(readNow(), sample.repeated(repetitions)); });
    std::printf("1 MB: longest stall %lld us\n", static_cast<long long>(stall.count()));
    EXPECT_LT(stall, 100ms);
}

TEST_F(PasteboardTest, TwoMegabytesInOnePropertyAreReadPieceByPiece)
{
    const int repetitions = 2000000 / static_cast<int>(sample.toUtf8().size()) + 1;
    Peer owner({text("own-whole"), QString::number(repetitions), sample});
    ASSERT_TRUE(owner.isReady());
    const auto stall = leastStallOfSome([&] { EXPECT_EQ(readNow(), sample.repeated(repetitions)); });
    std::printf("2 MB whole: longest stall %lld us\n", static_cast<long long>(stall.count()));
    EXPECT_LT(stall, 100ms);
}

TEST_F(PasteboardTest, AnOwnerThatEndsHalfWayGivesNothing)
{
    Peer owner({text("end-after"), text("2"), sample.repeated(10)});
    ASSERT_TRUE(owner.isReady());
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(readNow(), std::nullopt);
    EXPECT_LT(clock.elapsed(), 250) << "its end was noticed, not timed out";
}

TEST_F(PasteboardTest, AnOwnerThatStopsHalfWayGivesNothing)
{
    Peer owner({text("hang-after"), text("2"), sample.repeated(10)});
    ASSERT_TRUE(owner.isReady());
    EXPECT_EQ(readNow(), std::nullopt);
}

TEST_F(PasteboardTest, AnOwnerThatEndsBeforeItAnswersGivesNothingAtOnce)
{
    Peer owner({text("own"), text("UTF8_STRING"), text("x")});
    ASSERT_TRUE(owner.isReady());
    owner.send(SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    const auto reading = startReading();
    runFor(20ms);
    EXPECT_FALSE(reading->has_value());
    owner.end();
    EXPECT_TRUE(waitUntil([&] { return reading->has_value(); }));
    EXPECT_EQ(**reading, std::nullopt);
    EXPECT_LT(clock.elapsed(), 250);
}

TEST_F(PasteboardTest, AHungOwnerIsGivenUpWhileTheEventLoopRunsOn)
{
    Peer owner({text("own"), text("UTF8_STRING"), text("x")});
    ASSERT_TRUE(owner.isReady());
    owner.send(SIGSTOP);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(readNow(), std::nullopt);
    const auto took = clock.elapsed();
    EXPECT_GE(took, 300);
    EXPECT_LT(took, 400);
    const auto stall = leastStallOfSome([&] { EXPECT_EQ(readNow(), std::nullopt); });
    std::printf("given up after %lld ms, longest stall %lld us\n", static_cast<long long>(took),
                static_cast<long long>(stall.count()));
    EXPECT_LT(stall, 100ms);

    // A late answer to the reading that was given up must not reach the next one.
    owner.send(SIGCONT);
    EXPECT_EQ(readNow(), text("x"));
}

TEST_F(PasteboardTest, SeveralReadingsAtOnceDontDisturbEachOther)
{
    Peer owner({text("own"), text("UTF8_STRING"), sample});
    ASSERT_TRUE(owner.isReady());
    const auto first = startReading();
    const auto second = startReading();
    ASSERT_TRUE(waitUntil([&] { return first->has_value() && second->has_value(); }));
    EXPECT_EQ(**first, sample);
    EXPECT_EQ(**second, sample);
}

TEST_F(PasteboardTest, AskingForTheCountDuringAReadingLosesNoEvent)
{
    Peer owner({text("own-many"), text("20000"), sample});
    ASSERT_TRUE(owner.isReady());
    const auto reading = startReading();
    ASSERT_TRUE(waitUntil([&] {
        (void)pasteboard.changeCount();
        return reading->has_value();
    }));
    EXPECT_EQ(**reading, sample.repeated(20000));
}

TEST_F(PasteboardTest, AReadingThatIsUnderWayWhenThePasteboardGoesGivesNothing)
{
    Peer owner({text("own"), text("UTF8_STRING"), text("x")});
    ASSERT_TRUE(owner.isReady());
    owner.send(SIGSTOP);
    auto shortLived = std::make_unique<X11Pasteboard>(queue);
    const auto reading = read(*shortLived);
    shortLived.reset();
    ASSERT_TRUE(reading->has_value());
    EXPECT_EQ(**reading, std::nullopt);
}
