#include "settings_fixture.h"

#include "settings_ui/kit/pop_up_button.h"
#include "settings_ui/recorder_view.h"
#include "settings_ui/sidebar.h"

#include <QTranslator>

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

class SettingsTranslationTest : public SettingsFixture {
protected:
    SettingsTranslationTest()
    {
        QCoreApplication::installTranslator(&translator);
        parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
        parts.accessibility.trusted = false;
    }
    ~SettingsTranslationTest() override { QCoreApplication::removeTranslator(&translator); }

    void keep(QWidget& view, const QString& name)
    {
        const QString scale = QString::number(view.devicePixelRatioF());
        EXPECT_TRUE(
            view.grab().save(QStringLiteral(SCREENSHOTS "/settings_stretched_%1_%2x.png").arg(name, scale)));
    }

    static void expectTextFits(const QLabel& label)
    {
        EXPECT_GE(label.width(), label.minimumSizeHint().width()) << label.text().toStdString();
        EXPECT_GE(label.height(), label.heightForWidth(label.width())) << label.text().toStdString();
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
    static void expectEverythingFits(const QWidget& view)
    {
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

    StretchingTranslator translator;
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

} // namespace
} // namespace corvandi::testing
