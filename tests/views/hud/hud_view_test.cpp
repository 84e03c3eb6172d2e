#include "views/hud/hud_view.h"

#include "support/event_loop.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::runFor;
using testing::waitUntil;

QPalette palette(const QColor& window)
{
    QPalette palette(window);
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    return palette;
}

/// Counts how often a widget is painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& watched) { watched.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

class HUDViewTest : public ::testing::Test {
protected:
    HUDViewTest()
    {
        view.setAttribute(Qt::WA_TranslucentBackground);
        view.setPalette(palette(Qt::white));
        view.resize(300 + 2 * HUDView::shadowMargin, 64 + 2 * HUDView::shadowMargin);
        speak();
    }
    /// Fills the meter as somebody's voice would.
    void speak()
    {
        std::vector<double> bars;
        for (int i = 0; i < 28; ++i)
            bars.push_back(std::max(0.06, std::abs(std::sin(i * 0.55) * std::cos(i * 0.21))));
        model.setBars(bars);
    }
    void show(HUDState state, const QString& text = QString())
    {
        model.setState(state);
        model.setStatusText(text);
    }
    [[nodiscard]] QImage picture() { return view.grab().toImage(); }
    [[nodiscard]] QColor colorAt(const QImage& image, const QPointF& point) const
    {
        return image.pixelColor((point * image.devicePixelRatio()).toPoint());
    }
    /// The number of points in which the column at `x` has about this colour, on the view's middle.
    [[nodiscard]] qreal heightOf(const QImage& image, const QColor& color, qreal x) const
    {
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            const QColor pixel = image.pixelColor(static_cast<int>(x * image.devicePixelRatio()), y);
            found += std::abs(pixel.hue() - color.hue()) < 4 && pixel.saturation() > 140 ? 1 : 0;
        }
        return found / image.devicePixelRatio();
    }
    HUDModel model;
    HUDView view{model};
    PaintCounter paints{view};
};

TEST_F(HUDViewTest, NothingIsDrawnOutsideOfThePillButItsShadow)
{
    show(HUDState::recording);
    const QImage image = picture();
    EXPECT_EQ(colorAt(image, {1, 1}).alpha(), 0);
    EXPECT_EQ(colorAt(image, {1, view.height() / 2.0}).alpha(), 0);
    const qreal middle = view.pill().center().x();
    const QColor below = colorAt(image, {middle, view.pill().bottom() + 3});
    const QColor above = colorAt(image, {middle, view.pill().top() - 4});
    EXPECT_GT(below.alpha(), 10);
    EXPECT_LT(below.alpha(), 60);
    EXPECT_LT(above.alpha(), below.alpha()) << "the shadow falls downwards";
    EXPECT_GT(colorAt(image, view.pill().center()).alpha(), 200);
}

TEST_F(HUDViewTest, BarsAreDrawnInTheAccentColourAtTheirHeights)
{
    const QColor accent = view.palette().color(QPalette::Highlight);
    const std::pair<double, double> heights[] = {{0.06, 3}, {0.5, 15}, {1.0, 30}};
    for (const auto& [value, height] : heights) {
        model.setBars(std::vector<double>(28, value));
        show(HUDState::recording);
        // The first bar begins behind the padding, the dot and a space.
        const qreal x = view.pill().left() + 14 + 7 + 9 + 1;
        EXPECT_NEAR(heightOf(picture(), accent, x), height, 1) << value;
    }
}

TEST_F(HUDViewTest, NothingOfTheMeterIsLeftOnTheOtherFaces)
{
    const QColor accent = view.palette().color(QPalette::Highlight);
    model.setBars(std::vector<double>(28, 1.0));
    for (const HUDState state : {HUDState::processing, HUDState::notice, HUDState::error}) {
        show(state, QStringLiteral("Transcribing"));
        const QImage image = picture();
        for (qreal x = 0; x < view.width(); ++x)
            ASSERT_EQ(heightOf(image, accent, x), 0) << x;
    }
}

TEST_F(HUDViewTest, FollowsALightAndADarkDesktop)
{
    show(HUDState::notice);
    const QPointF inside(view.pill().left() + 8, view.pill().center().y());
    EXPECT_GT(colorAt(picture(), inside).lightness(), 200);
    view.setPalette(palette(QColor(40, 40, 44)));
    EXPECT_LT(colorAt(picture(), inside).lightness(), 80);
}

TEST_F(HUDViewTest, NoticesAreGreenAndErrorsOrange)
{
    const std::pair<HUDState, QColor> symbols[] = {{HUDState::notice, QColor(36, 160, 66)},
                                                   {HUDState::error, QColor(226, 118, 0)}};
    for (const auto& [state, color] : symbols) {
        show(state);
        const QPointF edgeOfSymbol(view.pill().left() + 14 + 2, view.pill().center().y());
        EXPECT_NEAR(colorAt(picture(), edgeOfSymbol).hue(), color.hue(), 6);
    }
}

TEST_F(HUDViewTest, AgainstAnOpaqueBackdropEveryPixelIsSolid)
{
    show(HUDState::recording);
    view.setBackdrop(HUDBackdrop::opaque);
    const QImage image = picture();
    for (const QPointF& point : {QPointF(1, 1), view.pill().center(), view.pill().topLeft()})
        EXPECT_EQ(colorAt(image, point).alpha(), 255);
}

TEST_F(HUDViewTest, ThePillsRegionIsACapsule)
{
    show(HUDState::recording);
    const QRegion region = view.pillRegion();
    EXPECT_EQ(region.boundingRect(), view.pill().toRect());
    EXPECT_TRUE(region.contains(view.pill().center().toPoint()));
    EXPECT_FALSE(region.contains(view.pill().topLeft().toPoint()));
}

TEST_F(HUDViewTest, TellsWhenThePillChangesAndOnlyThen)
{
    show(HUDState::recording);
    int changes = 0;
    QObject::connect(&view, &HUDView::pillChanged, &view, [&changes] { ++changes; });
    model.setBars(std::vector<double>(28, 1.0));
    model.setElapsed(QStringLiteral("0:05"));
    EXPECT_EQ(changes, 0);
    model.setState(HUDState::error);
    EXPECT_EQ(changes, 1);
}

TEST_F(HUDViewTest, ASpringCarriesThePillToItsNewSizeWhileVisible)
{
    show(HUDState::recording);
    view.show();
    ASSERT_TRUE(waitUntil([this] { return paints.count > 0; }));
    const qreal before = view.pill().width();
    std::vector<qreal> widths;
    QObject::connect(&view, &HUDView::pillChanged, &view, [&] { widths.push_back(view.pill().width()); });
    show(HUDState::error);
    EXPECT_GT(view.pill().width(), before - 20) << "not at once";
    EXPECT_TRUE(waitUntil([this] { return view.pill().width() == 40; }));
    EXPECT_GT(widths.size(), 5U);
    EXPECT_TRUE(std::is_sorted(widths.rbegin(), widths.rend())) << "no overshoot";
}

TEST_F(HUDViewTest, HiddenItChangesAtOnce)
{
    show(HUDState::recording);
    show(HUDState::error);
    EXPECT_EQ(view.pill().size(), QSizeF(40, view.pill().height()));
    EXPECT_EQ(view.neededWidth(), 40);
}

TEST_F(HUDViewTest, NeedsTheRoomOfAWidePillUntilItHasShrunk)
{
    view.setWidestPill(1000);
    show(HUDState::error, QStringLiteral("one two three four five ").repeated(5));
    const qreal wide = view.neededWidth();
    EXPECT_GT(wide, 300);
    view.show();
    ASSERT_TRUE(waitUntil([this] { return paints.count > 0; }));
    show(HUDState::recording);
    EXPECT_EQ(view.neededWidth(), wide);
    EXPECT_TRUE(waitUntil([&] { return view.neededWidth() < 300; }));
    EXPECT_EQ(view.neededWidth(), view.pill().width());
}

TEST_F(HUDViewTest, TheRecordingDotAndTheSpinnerMoveWhileVisible)
{
    view.show();
    ASSERT_TRUE(waitUntil([this] { return paints.count > 0; }));
    for (const HUDState state : {HUDState::recording, HUDState::processing}) {
        show(state);
        paints.count = 0;
        EXPECT_TRUE(waitUntil([this] { return paints.count > 5; }));
    }
}

TEST_F(HUDViewTest, TheOtherFacesAreDrawnOnceAndThenRest)
{
    view.show();
    for (const HUDState state : {HUDState::notice, HUDState::error}) {
        paints.count = 0;
        show(state, QStringLiteral("Copied"));
        ASSERT_TRUE(waitUntil([this] { return paints.count > 0; }));
        runFor(600ms);
        paints.count = 0;
        runFor(300ms);
        EXPECT_EQ(paints.count, 0);
        for (const QTimer* timer : view.findChildren<QTimer*>())
            EXPECT_FALSE(timer->isActive());
    }
}

TEST_F(HUDViewTest, NothingRunsWhileHiddenWhateverTheModelDoes)
{
    view.show();
    show(HUDState::recording);
    ASSERT_TRUE(waitUntil([this] { return paints.count > 0; }));
    view.hide();
    QCoreApplication::processEvents();
    paints.count = 0;
    speak();
    show(HUDState::processing, QStringLiteral("Transcribing"));
    show(HUDState::recording);
    runFor(300ms);
    EXPECT_EQ(paints.count, 0);
    const QList<QTimer*> timers = view.findChildren<QTimer*>();
    EXPECT_EQ(timers.size(), 1);
    for (const QTimer* timer : timers)
        EXPECT_FALSE(timer->isActive());
}

TEST_F(HUDViewTest, AnimatesAgainWhenShownAgain)
{
    show(HUDState::recording);
    view.show();
    ASSERT_TRUE(waitUntil([this] { return paints.count > 2; }));
    view.hide();
    view.show();
    paints.count = 0;
    EXPECT_TRUE(waitUntil([this] { return paints.count > 5; }));
}

} // namespace
} // namespace corvandi
