#include "views/dialogs/notice_dialogs.h"

#include "shell/updates/update_texts.h"
#include "support/event_loop.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::runFor;
using testing::waitUntil;

const Question question{{QStringLiteral("Corvandi 1.2 is available."), QStringLiteral("You have 1.0.")},
                        QStringLiteral("Open Page"),
                        QStringLiteral("Not Now"),
                        Attention::take};

class NoticeDialogsTest : public ::testing::Test {
protected:
    ~NoticeDialogsTest() override
    {
        dialogs.dismiss();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /// The dialogs that are visible.
    static std::vector<QDialog*> shown()
    {
        std::vector<QDialog*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible())
                found.push_back(dialog);
        }
        return found;
    }
    static QDialog& dialog()
    {
        if (shown().size() != 1)
            throw std::runtime_error("there is not exactly one dialog");
        return *shown().front();
    }
    static QPushButton& button(const char* text)
    {
        for (auto* candidate : dialog().findChildren<QPushButton*>()) {
            if (candidate->text().remove(u'&') == QLatin1String(text))
                return *candidate;
        }
        throw std::runtime_error("there is no such button");
    }
    static bool hasText(const QString& text)
    {
        const auto labels = dialog().findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->text() == text; });
    }
    static bool becomesActive()
    {
        return waitUntil([] { return !shown().empty() && dialog().isActiveWindow(); });
    }
    /// Keeps a picture, to be looked at.
    static void keepPicture(const char* name)
    {
        ASSERT_TRUE(becomesActive());
        EXPECT_TRUE(
            dialog().grab().save(QStringLiteral(SCREENSHOTS "/update-%1.png").arg(QLatin1String(name))));
    }
    void ask(const Question& asked = question)
    {
        dialogs.ask(asked, [this](Answer answer) { answers.push_back(answer); });
    }

    NoticeDialogs dialogs;
    std::vector<Answer> answers;
};

/// A window in which somebody writes.
class Elsewhere {
public:
    Elsewhere()
    {
        field_.show();
        field_.activateWindow();
        EXPECT_TRUE(waitUntil([this] { return field_.isActiveWindow(); }));
    }
    [[nodiscard]] bool hasFocus() const { return field_.isActiveWindow(); }
    void takeFocus()
    {
        field_.activateWindow();
        EXPECT_TRUE(waitUntil([this] { return field_.isActiveWindow(); }));
    }

private:
    QLineEdit field_;
};

TEST_F(NoticeDialogsTest, AQuestionShowsItsTextsAndAnswersYes)
{
    ask();
    EXPECT_TRUE(hasText(question.notice.text));
    EXPECT_TRUE(hasText(question.notice.details));
    button("Open Page").click();
    EXPECT_EQ(answers, std::vector{Answer::accept});
}

TEST_F(NoticeDialogsTest, AQuestionAnswersNo)
{
    ask();
    button("Not Now").click();
    EXPECT_EQ(answers, std::vector{Answer::decline});
}

TEST_F(NoticeDialogsTest, ClosingAQuestionIsANo)
{
    ask();
    dialog().close();
    EXPECT_EQ(answers, std::vector{Answer::decline});
}

TEST_F(NoticeDialogsTest, ADismissedQuestionIsNotAnswered)
{
    ask();
    dialogs.dismiss();
    EXPECT_TRUE(shown().empty());
    runFor(50ms);
    EXPECT_TRUE(answers.empty());
}

TEST_F(NoticeDialogsTest, AnAnswerMayShowTheNextThing)
{
    dialogs.ask(question, [this](Answer) { dialogs.showBusy(QStringLiteral("Checking…"), [] {}); });
    button("Open Page").click();
    EXPECT_TRUE(hasText(QStringLiteral("Checking…")));
}

TEST_F(NoticeDialogsTest, WhatAServerSaysIsNoMarkup)
{
    Question marked = question;
    marked.notice.details = QStringLiteral("<img src=\"http://tracker.example/\"><b>bold</b> &amp; more");
    ask(marked);
    for (const QLabel* label : dialog().findChildren<QLabel*>()) {
        if (label->pixmap().isNull()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
    }
    EXPECT_TRUE(hasText(marked.notice.details));
}

TEST_F(NoticeDialogsTest, LongNotesScroll)
{
    Question longer = question;
    longer.notice.details = QStringLiteral("Another line that says what is new.\n").repeated(200);
    ask(longer);
    ASSERT_TRUE(dialog().findChild<QPlainTextEdit*>());
    EXPECT_LT(dialog().height(), 500);
    keepPicture("long-notes");
}

TEST_F(NoticeDialogsTest, BusyCanBeCancelledByButtonAndByClosing)
{
    int cancelled = 0;
    dialogs.showBusy(QStringLiteral("Checking…"), [&] { ++cancelled; });
    button("Cancel").click();
    EXPECT_EQ(cancelled, 1);

    dialogs.showBusy(QStringLiteral("Checking…"), [&] { ++cancelled; });
    dialog().close();
    EXPECT_EQ(cancelled, 2);
}

TEST_F(NoticeDialogsTest, CancellingMayDismiss)
{
    dialogs.showBusy(QStringLiteral("Checking…"), [this] { dialogs.dismiss(); });
    button("Cancel").click();
    EXPECT_TRUE(shown().empty());
}

TEST_F(NoticeDialogsTest, AMessageStaysUntilItIsClosed)
{
    dialogs.tell({QStringLiteral("You're up to date."), QStringLiteral("1.0 is the newest.")});
    EXPECT_TRUE(hasText(QStringLiteral("You're up to date.")));
    button("OK").click();
    EXPECT_TRUE(shown().empty());
}

TEST_F(NoticeDialogsTest, OneThingIsShownAtATime)
{
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    ask();
    EXPECT_EQ(shown().size(), 1U);
    dialogs.tell({QStringLiteral("Done."), QString()});
    EXPECT_EQ(shown().size(), 1U);
    EXPECT_TRUE(answers.empty());
}

TEST_F(NoticeDialogsTest, AQuestionThatWaitsLeavesTheFocusWhereItIs)
{
    const Elsewhere elsewhere;
    Question patient = question;
    patient.attention = Attention::waitForIt;
    ask(patient);
    runFor(300ms);
    EXPECT_TRUE(elsewhere.hasFocus());
    EXPECT_FALSE(dialog().isActiveWindow());

    dialogs.bringToFront();
    EXPECT_TRUE(becomesActive());
}

TEST_F(NoticeDialogsTest, WhatFollowsDoesNotTakeTheFocusBack)
{
    Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    EXPECT_TRUE(becomesActive());
    elsewhere.takeFocus();
    ask();
    runFor(300ms);
    EXPECT_TRUE(elsewhere.hasFocus());
}

TEST_F(NoticeDialogsTest, WhatFollowsKeepsTheFocusThatTheLastOneHad)
{
    const Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    EXPECT_TRUE(becomesActive());
    ask();
    EXPECT_TRUE(becomesActive());
}

TEST_F(NoticeDialogsTest, WhatFollowsAnAnswerHasTheFocus)
{
    const Elsewhere elsewhere;
    dialogs.ask(question, [this](Answer) { dialogs.showBusy(QStringLiteral("Checking…"), [] {}); });
    EXPECT_TRUE(becomesActive());
    button("Open Page").click();
    EXPECT_TRUE(becomesActive());
}

TEST_F(NoticeDialogsTest, WhatFollowsBeforeTheLastOneCouldHaveTheFocusHasIt)
{
    const Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    ask();
    EXPECT_TRUE(becomesActive());
}

TEST_F(NoticeDialogsTest, LooksAsItShould)
{
    const Release release{Version::parse(QStringLiteral("1.2")).value(),
                          QUrl(),
                          QStringLiteral("• Starts faster.\n• Understands more names."),
                          {}};
    const RunningProgram program{Version::parse(QStringLiteral("1.0")).value(), {}, {}};
    dialogs.showBusy(update_texts::checking(), [] {});
    keepPicture("checking");
    ask(update_texts::available(release, program, Attention::take));
    keepPicture("available");
    dialogs.tell(update_texts::failed({UpdateFailure::Kind::untrusted, QString()}));
    keepPicture("failed");
    dialogs.tell(update_texts::upToDate(program));
    keepPicture("up-to-date");
}

} // namespace
} // namespace corvandi
