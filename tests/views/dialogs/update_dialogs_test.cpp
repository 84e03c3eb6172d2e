#include "views/dialogs/update_dialogs.h"

#include "shell/updates/update_texts.h"
#include "support/event_loop.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::runFor;
using testing::waitUntil;

const UpdateQuestion question{{QStringLiteral("Corvandi 1.2 is available."), QStringLiteral("You have 1.0.")},
                              QStringLiteral("Download"),
                              QStringLiteral("Not Now"),
                              Attention::take};

class UpdateDialogsTest : public ::testing::Test {
protected:
    ~UpdateDialogsTest() override
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
    void ask(const UpdateQuestion& asked = question)
    {
        dialogs.ask(asked, [this](UpdateAnswer answer) { answers.push_back(answer); });
    }

    UpdateDialogs dialogs;
    std::vector<UpdateAnswer> answers;
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

TEST_F(UpdateDialogsTest, AQuestionShowsItsTextsAndAnswersYes)
{
    ask();
    EXPECT_TRUE(hasText(question.message.text));
    EXPECT_TRUE(hasText(question.message.details));
    button("Download").click();
    EXPECT_EQ(answers, std::vector{UpdateAnswer::accept});
}

TEST_F(UpdateDialogsTest, AQuestionAnswersNo)
{
    ask();
    button("Not Now").click();
    EXPECT_EQ(answers, std::vector{UpdateAnswer::decline});
}

TEST_F(UpdateDialogsTest, ClosingAQuestionIsANo)
{
    ask();
    dialog().close();
    EXPECT_EQ(answers, std::vector{UpdateAnswer::decline});
}

TEST_F(UpdateDialogsTest, ADismissedQuestionIsNotAnswered)
{
    ask();
    dialogs.dismiss();
    EXPECT_TRUE(shown().empty());
    runFor(50ms);
    EXPECT_TRUE(answers.empty());
}

TEST_F(UpdateDialogsTest, AnAnswerMayShowTheNextThing)
{
    dialogs.ask(question, [this](UpdateAnswer) { dialogs.showBusy(QStringLiteral("Downloading…"), [] {}); });
    button("Download").click();
    EXPECT_TRUE(hasText(QStringLiteral("Downloading…")));
}

TEST_F(UpdateDialogsTest, WhatAServerSaysIsNoMarkup)
{
    UpdateQuestion marked = question;
    marked.message.details = QStringLiteral("<img src=\"http://tracker.example/\"><b>bold</b> &amp; more");
    ask(marked);
    for (const QLabel* label : dialog().findChildren<QLabel*>()) {
        if (label->pixmap().isNull()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
    }
    EXPECT_TRUE(hasText(marked.message.details));
}

TEST_F(UpdateDialogsTest, LongNotesScroll)
{
    UpdateQuestion longer = question;
    longer.message.details = QStringLiteral("Another line that says what is new.\n").repeated(200);
    ask(longer);
    ASSERT_TRUE(dialog().findChild<QPlainTextEdit*>());
    EXPECT_LT(dialog().height(), 500);
    keepPicture("long-notes");
}

TEST_F(UpdateDialogsTest, BusyCanBeCancelledByButtonAndByClosing)
{
    int cancelled = 0;
    dialogs.showBusy(QStringLiteral("Checking…"), [&] { ++cancelled; });
    button("Cancel").click();
    EXPECT_EQ(cancelled, 1);

    dialogs.showBusy(QStringLiteral("Checking…"), [&] { ++cancelled; });
    dialog().close();
    EXPECT_EQ(cancelled, 2);
}

TEST_F(UpdateDialogsTest, CancellingMayDismiss)
{
    dialogs.showBusy(QStringLiteral("Checking…"), [this] { dialogs.dismiss(); });
    button("Cancel").click();
    EXPECT_TRUE(shown().empty());
}

TEST_F(UpdateDialogsTest, BusyWithoutAWayOutHasNoButton)
{
    dialogs.showBusy(QStringLiteral("Opening…"));
    EXPECT_TRUE(dialog().findChildren<QPushButton*>().isEmpty());
}

TEST_F(UpdateDialogsTest, ProgressIsShownAndDoesNotCloseAtItsEnd)
{
    dialogs.showBusy(QStringLiteral("Downloading…"), [] {});
    const auto* bar = dialog().findChild<QProgressBar*>();
    ASSERT_TRUE(bar);
    EXPECT_EQ(bar->maximum(), 0);
    dialogs.showProgress({250'000'000, 500'000'000});
    EXPECT_EQ(bar->value() * 2, bar->maximum());
    dialogs.showProgress({500'000'000, 500'000'000});
    EXPECT_EQ(bar->value(), bar->maximum());
    EXPECT_TRUE(hasText(QStringLiteral("Downloading…")));
}

TEST_F(UpdateDialogsTest, ProgressOfNothingIsIgnored)
{
    dialogs.showProgress({1, 2});
    EXPECT_TRUE(shown().empty());
}

TEST_F(UpdateDialogsTest, AMessageStaysUntilItIsClosed)
{
    dialogs.tell({QStringLiteral("You're up to date."), QStringLiteral("1.0 is the newest.")});
    EXPECT_TRUE(hasText(QStringLiteral("You're up to date.")));
    button("OK").click();
    EXPECT_TRUE(shown().empty());
}

TEST_F(UpdateDialogsTest, OneThingIsShownAtATime)
{
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    ask();
    EXPECT_EQ(shown().size(), 1U);
    dialogs.tell({QStringLiteral("Done."), QString()});
    EXPECT_EQ(shown().size(), 1U);
    EXPECT_TRUE(answers.empty());
}

TEST_F(UpdateDialogsTest, AQuestionThatWaitsLeavesTheFocusWhereItIs)
{
    const Elsewhere elsewhere;
    UpdateQuestion patient = question;
    patient.attention = Attention::waitForIt;
    ask(patient);
    runFor(300ms);
    EXPECT_TRUE(elsewhere.hasFocus());
    EXPECT_FALSE(dialog().isActiveWindow());

    dialogs.bringToFront();
    EXPECT_TRUE(becomesActive());
}

TEST_F(UpdateDialogsTest, WhatFollowsDoesNotTakeTheFocusBack)
{
    Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Downloading…"), [] {});
    EXPECT_TRUE(becomesActive());
    elsewhere.takeFocus();
    ask();
    runFor(300ms);
    EXPECT_TRUE(elsewhere.hasFocus());
}

TEST_F(UpdateDialogsTest, WhatFollowsKeepsTheFocusThatTheLastOneHad)
{
    const Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    EXPECT_TRUE(becomesActive());
    ask();
    EXPECT_TRUE(becomesActive());
}

TEST_F(UpdateDialogsTest, WhatFollowsAnAnswerHasTheFocus)
{
    const Elsewhere elsewhere;
    dialogs.ask(question, [this](UpdateAnswer) { dialogs.showBusy(QStringLiteral("Downloading…"), [] {}); });
    EXPECT_TRUE(becomesActive());
    button("Download").click();
    EXPECT_TRUE(becomesActive());
}

TEST_F(UpdateDialogsTest, WhatFollowsBeforeTheLastOneCouldHaveTheFocusHasIt)
{
    const Elsewhere elsewhere;
    dialogs.showBusy(QStringLiteral("Checking…"), [] {});
    ask();
    EXPECT_TRUE(becomesActive());
}

TEST_F(UpdateDialogsTest, LooksAsItShould)
{
    const Release release{Version::parse(QStringLiteral("1.2")).value(),
                          QUrl(),
                          12'300'000,
                          {},
                          QStringLiteral("• Starts faster.\n• Understands more names."),
                          {}};
    const RunningProgram program{Version::parse(QStringLiteral("1.0")).value(), {}, {}};
    dialogs.showBusy(update_texts::checking(), [] {});
    keepPicture("checking");
    ask(update_texts::download(release, program, Attention::take));
    keepPicture("available");
    dialogs.showBusy(update_texts::downloading(release), [] {});
    dialogs.showProgress({4'000'000, 12'300'000});
    keepPicture("downloading");
    ask(update_texts::install(release));
    keepPicture("ready");
    dialogs.tell(update_texts::failed({UpdateFailure::Kind::tampered, QString()}));
    keepPicture("failed");
    dialogs.tell(update_texts::upToDate(program));
    keepPicture("up-to-date");
}

} // namespace
} // namespace corvandi
