#include "settings_fixture.h"

#include "core/data/store_fixture.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"
#include "views/appearance/appearance_follower.h"
#include "views/settings/app_chooser.h"
#include "views/settings/history_pane_view.h"
#include "views/settings/vocabulary_pane_view.h"

#include <QApplication>
#include <QIcon>
#include <QScrollBar>

#include <tuple>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

const QColor accent(48, 140, 198);
/// The smallest window's, without the sidebar and the title.
constexpr QSize paneSize(444, 410);

/// Keeps pictures of the pages with lists, to be looked at.
class ListPictures : public StoreFixture, public ::testing::WithParamInterface<const char*> {
protected:
    ListPictures()
    {
        const bool isDark = QLatin1String(GetParam()) == QLatin1String("dark");
        QApplication::setPalette(isDark ? darkPalette(accent) : lightPalette(accent));
    }
    ~ListPictures() override { QApplication::setPalette(QPalette()); }

    static void keepPane(QWidget& view, const char* name)
    {
        view.resize(paneSize);
        keep(view, name);
    }
    static void keep(QWidget& view, const char* name)
    {
        ASSERT_TRUE(testing::isShown(view));
        testing::runFor(100ms);
        const QPixmap picture = view.grab();
        EXPECT_TRUE(picture.save(QStringLiteral(SCREENSHOTS "/settings_%1_%2_%3x.png")
                                     .arg(QLatin1String(name), QLatin1String(GetParam()))
                                     .arg(picture.devicePixelRatio())));
    }

    Store& store = start();
};

INSTANTIATE_TEST_SUITE_P(Looks, ListPictures, ::testing::Values("light", "dark"),
                         [](const auto& parameter) { return parameter.param; });

TEST_P(ListPictures, History)
{
    HistoryPane pane(store, [](const QString&) {});
    HistoryPaneView view(pane);
    keepPane(view, "history_empty");
    for (const char* text : {"A short one.",
                             "A transcript that is long enough to need more than one line of the list, and "
                             "so shows how its buttons stand beside it.",
                             "One with\ntwo lines."})
        store.addHistory(QString::fromUtf8(text), Date{});
    pane.reload();
    keepPane(view, "history");
    auto* row = testing::rowsOf<HistoryRowView>(view)[1];
    testing::rowsOf<HistoryRowView>(view)[0]->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(row->hasFocus());
    keepPane(view, "history_focus");
    view.findChild<QLineEdit*>()->setText(QStringLiteral("weather"));
    keepPane(view, "history_no_match");
}

TEST_P(ListPictures, LongHistory)
{
    HistoryPane pane(store, [](const QString&) {});
    HistoryPaneView view(pane);
    const QString sentence = QStringLiteral("Transcript %1, of a sentence or two, as people dictate them. ");
    for (int i = 0; i < 1000; ++i)
        store.addHistory(sentence.arg(i).repeated(1 + i % 4), Date{});
    keepPane(view, "history_many");
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
    keepPane(view, "history_many_scrolled");
}

TEST_P(ListPictures, Confirmation)
{
    HistoryPane pane(store, [](const QString&) {});
    HistoryPaneView view(pane);
    store.addHistory(QStringLiteral("A short one."), Date{});
    ASSERT_TRUE(testing::isShown(view));
    pane.askToClear();
    keep(*view.findChild<kit::MessageDialog*>(), "history_confirmation");
}

TEST_P(ListPictures, Vocabulary)
{
    testing::FakeApplicationDirectory applications;
    testing::FakeWorkspace workspace;
    const AppCatalog catalog(applications, workspace, Locale(QStringLiteral("en-US")));
    VocabularyPane pane(store);
    VocabularyPaneView view(pane, catalog, [](QWidget&, const VocabularyPaneView::Picked&) {});
    keepPane(view, "vocabulary_empty");
    const VocabScope global = vocab_scope::Global{};
    store.addVocab(QStringLiteral("corvandy"), QStringLiteral("Corvandi"), global);
    store.addVocab(QStringLiteral("my address"), QStringLiteral("12 Long Street, Some Town, Far Away"),
                   global);
    store.addVocab(QStringLiteral("teh"), QStringLiteral("the"), global);
    pane.reloadRules();
    keepPane(view, "vocabulary");
    auto& row = *testing::rowsOf<kit::ListRow>(view)[0];
    row.setFocus();
    QTest::keyClick(&row, Qt::Key_Down);
    keepPane(view, "vocabulary_focus");
    pane.addApp({QStringLiteral("org.mail"), QStringLiteral("Mail")});
    keepPane(view, "vocabulary_application_empty");
    store.addVocab(QStringLiteral("best regards"), QStringLiteral("Kind regards"), pane.scope());
    pane.reloadRules();
    keepPane(view, "vocabulary_application");
}

/// With the icons that this machine has.
TEST_P(ListPictures, Chooser)
{
    const QString theme = QIcon::themeName();
    QIcon::setThemeName(QStringLiteral("Adwaita"));
    testing::FakeApplicationDirectory applications;
    for (const auto& [id, name, icon] :
         {std::tuple("a", "Calculator", "accessories-calculator"),
          std::tuple("b", "Files", "system-file-manager"), std::tuple("c", "Mail", "mail-unread"),
          std::tuple("d", "Terminal", "utilities-terminal"),
          std::tuple("e", "Text Editor", "accessories-text-editor"),
          std::tuple("f", "Web Browser", "web-browser"),
          std::tuple("g", "An Application With a Very Long Name Indeed, Really", "no"),
          std::tuple("h", "Unknown", "application-x-executable")}) {
        applications.installed.push_back({QString::fromUtf8(id), QString::fromUtf8(name), {}});
        applications.icons[QString::fromUtf8(id)] = QString::fromUtf8(icon);
    }
    testing::FakeWorkspace workspace;
    const AppCatalog catalog(applications, workspace, Locale(QStringLiteral("en-US")));
    AppChooser chooser(catalog, [](const AppInfo&) {});
    keep(chooser, "chooser");
    auto& search = *chooser.findChild<QLineEdit*>();
    QTest::keyClicks(&search, QStringLiteral("te"));
    keep(chooser, "chooser_search");
    search.setText(QStringLiteral("xyz"));
    keep(chooser, "chooser_no_match");
    QIcon::setThemeName(theme);
}

} // namespace
} // namespace corvandi
