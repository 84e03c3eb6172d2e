#include "settings_fixture.h"

#include "core/data/store_fixture.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"
#include "views/kit/controls.h"
#include "views/settings/app_chooser.h"
#include "views/settings/general_pane_view.h"
#include "views/settings/history_pane_view.h"
#include "views/settings/settings_view.h"
#include "views/settings/vocabulary_pane_view.h"

#include <QTranslator>

#include <cmath>

namespace corvandi::testing {
namespace {

/// Every text two fifths longer, in brackets: longer than most languages need.
class StretchingTranslator : public QTranslator {
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char*, const char* source, const char*, int) const override
    {
        const QString text = QString::fromUtf8(source);
        QString stretched = text;
        for (qsizetype more = (text.size() * 2 + 4) / 5; more > 0; --more)
            stretched += more % 5 == 0 ? QLatin1Char(' ') : QLatin1Char('n');
        return QLatin1Char('[') + stretched + QLatin1Char(']');
    }
};

/// Translates for as long as it lives.
class Stretched {
public:
    Stretched() { QCoreApplication::installTranslator(&translator_); }
    ~Stretched() { QCoreApplication::removeTranslator(&translator_); }

protected:
    static void keep(QWidget& view, const QString& name)
    {
        const QString scale = QString::number(view.devicePixelRatioF());
        EXPECT_TRUE(
            view.grab().save(QStringLiteral(SCREENSHOTS "/settings_stretched_%1_%2x.png").arg(name, scale)));
    }

    static void expectTextFits(const QLabel& label)
    {
        EXPECT_GE(label.width(), label.minimumSizeHint().width()) << label.text().toStdString();
        // A window has whole device pixels: where these are no whole points, it may be a point lower than it
        // asked for. A line that is missing takes more than ten.
        const int lost = label.devicePixelRatioF() == std::floor(label.devicePixelRatioF()) ? 0 : 1;
        EXPECT_GE(label.height() + lost, label.heightForWidth(label.width())) << label.text().toStdString();
    }
    static void expectControlFits(const QWidget& control)
    {
        EXPECT_GE(control.width(), control.sizeHint().width()) << control.accessibleName().toStdString();
        EXPECT_GE(control.height(), control.sizeHint().height()) << control.accessibleName().toStdString();
    }
    /// Widgets that stand side by side in the same parent.
    static void expectNoOverlap(const QWidget& parent)
    {
        const auto children = parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        for (const QWidget* child : children) {
            if (child->isHidden() || child->isWindow())
                continue;
            EXPECT_TRUE(parent.rect().contains(child->geometry()) ||
                        parent.objectName() == QLatin1String("qt_scrollarea_viewport"))
                << child->metaObject()->className() << " sticks out";
            for (const QWidget* other : children) {
                const bool isPair = other != child && !other->isHidden() && !other->isWindow();
                EXPECT_FALSE(isPair && child->geometry().intersects(other->geometry()))
                    << child->metaObject()->className() << " on " << other->metaObject()->className();
            }
        }
    }
    /// What has changed when the view appeared is put in order by events that are still to come.
    static void layOut()
    {
        constexpr int nestedLayouts = 10;
        for (int round = 0; round < nestedLayouts; ++round)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    }
    static void expectEverythingFits(const QWidget& view)
    {
        layOut();
        for (const QWidget* widget : view.findChildren<QWidget*>()) {
            if (!widget->isVisible())
                continue;
            if (const auto* label = qobject_cast<const QLabel*>(widget))
                expectTextFits(*label);
            else if (qobject_cast<const QAbstractButton*>(widget) ||
                     qobject_cast<const kit::PopUpButton*>(widget))
                expectControlFits(*widget);
            expectNoOverlap(*widget);
        }
    }

private:
    StretchingTranslator translator_;
};

class SettingsTranslationTest : public SettingsFixture, protected Stretched {
protected:
    SettingsTranslationTest()
    {
        parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
        parts.general.refresh();
        parts.queue.drain();
        parts.accessibility.trusted = false;
    }
};

/// The pages that work on the store, as narrow as they get in the window.
class ListsTranslationTest : public StoreFixture, protected Stretched {
protected:
    ListsTranslationTest()
    {
        history.resize(paneSize);
        vocabulary.resize(paneSize);
    }
    /// A window grows with its texts, where a language has longer ones.
    static bool widen(QWidget& page)
    {
        runFor(std::chrono::milliseconds(50));
        const QSize size = page.minimumSizeHint().expandedTo(paneSize);
        page.resize(size);
        return waitUntil([&] { return page.size() == size; });
    }
    /// Also what may not be there: the words in a field while it is empty.
    static void expectPlaceholdersFit(const QWidget& view)
    {
        for (const QLineEdit* field : view.findChildren<QLineEdit*>()) {
            const QMargins margins = field->textMargins();
            EXPECT_LE(field->fontMetrics().horizontalAdvance(field->placeholderText()),
                      field->width() - margins.left() - margins.right() - 6)
                << field->placeholderText().toStdString();
        }
    }

    static constexpr QSize paneSize{SettingsView::smallestSize.width() - Sidebar::fixedWidth - 1, 400};
    Store& store = start();
    HistoryPane historyPane{store, [](const QString&) {}};
    HistoryPaneView history{historyPane};
    FakeApplicationDirectory applications;
    FakeWorkspace workspace;
    AppCatalog catalog{applications, workspace, Locale(QStringLiteral("en-US"))};
    VocabularyPane vocabularyPane{store};
    VocabularyPaneView vocabulary{vocabularyPane, catalog,
                                  [](QWidget&, const VocabularyPaneView::Picked&) {}};
};

TEST_F(SettingsTranslationTest, LongTextsFitIntoTheGeneralPane)
{
    const auto view = makeSettings();
    view->resize(SettingsView::smallestSize);
    ASSERT_TRUE(isShown(*view));
    keep(*view, QStringLiteral("general"));
    EXPECT_TRUE(shows(*view, QStringLiteral("[Launch at loginn nnnn]")));
    expectEverythingFits(*view);
}

TEST_F(SettingsTranslationTest, LongTextsFitIntoThePermissionsPane)
{
    parts.navigator.setPane(SettingsPane::permissions);
    const auto view = makeSettings();
    view->resize(SettingsView::smallestSize);
    ASSERT_TRUE(isShown(*view));
    keep(*view, QStringLiteral("permissions"));
    expectEverythingFits(*view);
}

TEST_F(SettingsTranslationTest, LongTitlesFitIntoTheSidebar)
{
    const auto view = makeSettings();
    ASSERT_TRUE(isShown(*view));
    const auto& sidebar = *view->findChild<Sidebar*>();
    for (int row = 0; row < sidebar.count(); ++row) {
        const QListWidgetItem& item = *sidebar.item(row);
        EXPECT_LT(QFontMetrics(sidebar.font()).horizontalAdvance(item.text()),
                  sidebar.visualItemRect(&item).width() - 2 * 10 - 28);
    }
}

TEST_F(SettingsTranslationTest, LongTextsFitIntoTheWelcome)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    keep(view, QStringLiteral("welcome"));
    expectEverythingFits(view);
}

TEST_F(ListsTranslationTest, LongTextsFitIntoTheHistory)
{
    ASSERT_TRUE(isShown(history));
    expectEverythingFits(history);
    store.addHistory(QStringLiteral("A transcript of one line and a half, which are enough for a row."),
                     Date{});
    historyPane.reload();
    runFor(std::chrono::milliseconds(50));
    keep(history, QStringLiteral("history"));
    expectEverythingFits(history);
    expectPlaceholdersFit(history);
    historyPane.setQuery(QStringLiteral("something that nobody has said"));
    runFor(std::chrono::milliseconds(50));
    keep(history, QStringLiteral("history_no_match"));
    expectEverythingFits(history);
}

TEST_F(ListsTranslationTest, LongTextsFitIntoTheConfirmation)
{
    store.addHistory(QStringLiteral("one"), Date{});
    ASSERT_TRUE(isShown(history));
    historyPane.askToClear();
    auto& confirmation = *history.findChild<kit::MessageDialog*>();
    ASSERT_TRUE(isShown(confirmation));
    keep(confirmation, QStringLiteral("confirmation"));
    expectEverythingFits(confirmation);
}

TEST_F(ListsTranslationTest, LongTextsFitIntoTheEmptyVocabulary)
{
    ASSERT_TRUE(isShown(vocabulary));
    ASSERT_TRUE(widen(vocabulary));
    expectEverythingFits(vocabulary);
    expectPlaceholdersFit(vocabulary);
}

TEST_F(ListsTranslationTest, LongTextsFitIntoTheVocabulary)
{
    vocabularyPane.addApp({QStringLiteral("org.mail"), QStringLiteral("Mail")});
    store.addVocab(QStringLiteral("teh"), QStringLiteral("the"), vocabularyPane.scope());
    vocabularyPane.reloadRules();
    ASSERT_TRUE(isShown(vocabulary));
    ASSERT_TRUE(widen(vocabulary));
    runFor(std::chrono::milliseconds(50));
    keep(vocabulary, QStringLiteral("vocabulary"));
    expectEverythingFits(vocabulary);
    expectPlaceholdersFit(vocabulary);
}

TEST_F(ListsTranslationTest, LongTextsFitIntoTheChooser)
{
    applications.installed = {{QStringLiteral("a"), QStringLiteral("Alpha"), {}}};
    AppChooser chooser(catalog, [](const AppInfo&) {});
    ASSERT_TRUE(isShown(chooser));
    keep(chooser, QStringLiteral("chooser"));
    expectEverythingFits(chooser);
    expectPlaceholdersFit(chooser);
}

} // namespace
} // namespace corvandi::testing
