#pragma once

#include "conformance/conformance.h"
#include "ports/pasteboard.h"

#include <memory>
#include <optional>

namespace corvandi::testing {

/// The clipboard of the session, and the other programs that use it.
class PasteboardDriver : public PassingTime {
public:
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    /// Another program takes the clipboard over with this text.
    virtual void copyElsewhere(const QString& text) = 0;
    /// Another program takes the clipboard over with a picture.
    virtual void copyPictureElsewhere() = 0;
    /// A password manager takes the clipboard over, and marks what is there.
    virtual void copySecretElsewhere() = 0;
    /// Another program takes the clipboard over with a text, and hangs.
    virtual void copyInAProgramThatHangs() = 0;
    /// The text that another program is given; nothing when there is none.
    [[nodiscard]] virtual std::optional<QString> textSeenElsewhere() = 0;
    /// Whether other programs are told not to record the content.
    [[nodiscard]] virtual bool isConcealedElsewhere() = 0;
};

class PasteboardSuite : public ConformanceTest<PasteboardDriver> {
protected:
    using Reading = std::optional<std::optional<QString>>;

    /// Starts a reading whose result is put into what is returned.
    [[nodiscard]] std::shared_ptr<Reading> startReading()
    {
        auto result = std::make_shared<Reading>();
        driver.pasteboard().string().then([result](const std::optional<QString>& text) { *result = text; });
        return result;
    }
    [[nodiscard]] std::optional<QString> read()
    {
        const auto reading = startReading();
        EXPECT_TRUE(driver.until([&] { return reading->has_value(); })) << "the reading does not end";
        return reading->value_or(std::nullopt);
    }
    [[nodiscard]] bool readMark()
    {
        const auto result = std::make_shared<std::optional<bool>>();
        driver.pasteboard().isConcealed().then([result](bool isConcealed) { *result = isConcealed; });
        EXPECT_TRUE(driver.until([&] { return result->has_value(); })) << "the reading does not end";
        return result->value_or(false);
    }
    /// Puts a text there, in as many attempts as the platform needs to hear of what others did before.
    [[nodiscard]] bool write(const QString& text)
    {
        return driver.until([&] {
            driver.pasteboard().clearContents();
            return driver.pasteboard().setString(text, pasteboard_type::string);
        });
    }
    [[nodiscard]] int64_t count() { return driver.pasteboard().changeCount(); }

    const QString sample = QStringLiteral("abc ä € \U0001F600\n\tz");
};

TEST_P(PasteboardSuite, ATextOfAnotherProgramIsRead)
{
    driver.copyElsewhere(sample);
    EXPECT_EQ(read(), sample);
}

TEST_P(PasteboardSuite, TheLatestOfSeveralTextsIsRead)
{
    driver.copyElsewhere(QStringLiteral("first"));
    driver.copyElsewhere(QStringLiteral("second"));
    EXPECT_EQ(read(), QStringLiteral("second"));
}

TEST_P(PasteboardSuite, APictureIsNoText)
{
    driver.copyPictureElsewhere();
    EXPECT_EQ(read(), std::nullopt);
}

TEST_P(PasteboardSuite, AnOwnerThatDoesNotAnswerGivesNothing)
{
    driver.copyInAProgramThatHangs();
    EXPECT_EQ(read(), std::nullopt);
}

TEST_P(PasteboardSuite, OtherProgramsAreGivenTheText)
{
    ASSERT_TRUE(write(sample));
    EXPECT_EQ(driver.textSeenElsewhere(), sample);
    EXPECT_FALSE(driver.isConcealedElsewhere());
}

TEST_P(PasteboardSuite, ItsOwnTextIsRead)
{
    ASSERT_TRUE(write(sample));
    EXPECT_EQ(read(), sample);
}

TEST_P(PasteboardSuite, ConcealedTextIsStillText)
{
    ASSERT_TRUE(write(sample));
    ASSERT_TRUE(driver.pasteboard().setString({}, pasteboard_type::concealed));
    EXPECT_TRUE(driver.isConcealedElsewhere());
    EXPECT_EQ(driver.textSeenElsewhere(), sample);
    EXPECT_EQ(read(), sample);
}

TEST_P(PasteboardSuite, ASecretOfAnotherProgramIsKnownAsOne)
{
    driver.copySecretElsewhere();
    EXPECT_TRUE(readMark());
    driver.copyElsewhere(sample);
    EXPECT_FALSE(readMark());
}

TEST_P(PasteboardSuite, ItsOwnMarkIsRead)
{
    ASSERT_TRUE(write(sample));
    EXPECT_FALSE(readMark());
    ASSERT_TRUE(driver.pasteboard().setString({}, pasteboard_type::concealed));
    EXPECT_TRUE(readMark());
}

TEST_P(PasteboardSuite, AnOwnerThatDoesNotAnswerHasMarkedNothing)
{
    driver.copyInAProgramThatHangs();
    EXPECT_FALSE(readMark());
}

TEST_P(PasteboardSuite, ClearingTakesTheTextOfAnotherProgramAway)
{
    driver.copyElsewhere(sample);
    EXPECT_TRUE(driver.until([this] {
        driver.pasteboard().clearContents();
        return !driver.textSeenElsewhere();
    }));
    EXPECT_EQ(read(), std::nullopt);
}

TEST_P(PasteboardSuite, ClearingTakesEveryFormOfItsOwnContentAway)
{
    ASSERT_TRUE(write(sample));
    ASSERT_TRUE(driver.pasteboard().setString({}, pasteboard_type::concealed));
    driver.pasteboard().clearContents();
    EXPECT_EQ(driver.textSeenElsewhere(), std::nullopt);
    EXPECT_FALSE(driver.isConcealedElsewhere());
    EXPECT_EQ(read(), std::nullopt);
}

TEST_P(PasteboardSuite, WithoutClearingFirstNothingIsAdded)
{
    EXPECT_FALSE(driver.pasteboard().setString(sample, pasteboard_type::string));
    EXPECT_NE(driver.textSeenElsewhere(), sample);
}

TEST_P(PasteboardSuite, NothingIsAddedToTheContentOfAnotherProgram)
{
    ASSERT_TRUE(write(QStringLiteral("mine")));
    driver.copyElsewhere(QStringLiteral("theirs"));
    EXPECT_FALSE(driver.pasteboard().setString(QStringLiteral("more"), pasteboard_type::string));
    EXPECT_EQ(driver.textSeenElsewhere(), QStringLiteral("theirs"));
}

TEST_P(PasteboardSuite, TheCountGrowsWithEachTakeoverOfItsOwn)
{
    const auto before = count();
    driver.pasteboard().clearContents();
    const auto between = count();
    EXPECT_GT(between, before);
    driver.pasteboard().clearContents();
    EXPECT_GT(count(), between);
}

TEST_P(PasteboardSuite, TheCountGrowsWithACopyOfAnotherProgram)
{
    driver.copyElsewhere(QStringLiteral("first"));
    const auto before = count();
    driver.copyElsewhere(QStringLiteral("second"));
    EXPECT_GT(count(), before);
}

TEST_P(PasteboardSuite, ACopyOfAnotherProgramAfterItsOwnIsCountedAndRead)
{
    ASSERT_TRUE(write(QStringLiteral("dictated")));
    const auto noted = count();
    driver.copyElsewhere(QStringLiteral("copied meanwhile"));
    EXPECT_GT(count(), noted);
    EXPECT_EQ(read(), QStringLiteral("copied meanwhile"));
}

TEST_P(PasteboardSuite, TheFormerTextCanBePutBack)
{
    driver.copyElsewhere(sample);
    const auto saved = read();
    ASSERT_TRUE(saved);
    ASSERT_TRUE(write(QStringLiteral("dictated")));
    EXPECT_EQ(driver.textSeenElsewhere(), QStringLiteral("dictated"));
    ASSERT_TRUE(write(*saved));
    EXPECT_EQ(driver.textSeenElsewhere(), sample);
}

} // namespace corvandi::testing
