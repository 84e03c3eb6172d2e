#include "settings_fixture.h"

#include "appearance/palettes.h"
#include "settings_ui/history_pane_view.h"
#include "settings_ui/vocabulary_pane_view.h"
#include "storage/store_fixture.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"

#include <QApplication>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

const QColor accent(48, 140, 198);
constexpr QSize paneSize(480, 420);

/// Keeps pictures of the pages with lists, to be looked at.
class ListPictures : public StoreFixture, public ::testing::WithParamInterface<const char*> {
protected:
    ListPictures()
    {
        const bool isDark = QLatin1String(GetParam()) == QLatin1String("dark");
        QApplication::setPalette(isDark ? darkPalette(accent) : lightPalette(accent));
    }
    ~ListPictures() override { QApplication::setPalette(QPalette()); }

    static void keep(QWidget& view, const char* name)
    {
        view.resize(paneSize);
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
    keep(view, "history_empty");
    for (const char* text : {"A short one.",
                             "A transcript that is long enough to need more than one line of the list, and "
                             "so shows how its buttons stand beside it.",
                             "One with\ntwo lines."})
        store.addHistory(QString::fromUtf8(text), Date{});
    pane.reload();
    keep(view, "history");
}

TEST_P(ListPictures, Vocabulary)
{
    testing::FakeApplicationDirectory applications;
    testing::FakeWorkspace workspace;
    const AppCatalog catalog(applications, workspace, Locale(QStringLiteral("en-US")));
    VocabularyPane pane(store);
    VocabularyPaneView view(pane, catalog, [](QWidget&, const VocabularyPaneView::Picked&) {});
    keep(view, "vocabulary_empty");
    pane.addApp({QStringLiteral("org.mail"), QStringLiteral("Mail")});
    for (const char* from : {"teh", "my address"}) {
        pane.setNewFrom(QString::fromUtf8(from));
        pane.setNewTo(QStringLiteral("the"));
        pane.add();
    }
    keep(view, "vocabulary");
}

} // namespace
} // namespace corvandi
