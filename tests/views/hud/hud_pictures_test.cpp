#include "support/event_loop.h"
#include "views/hud/hud_view.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

struct Face {
    const char* name;
    HUDState state;
    const char* text;
};

const Face faces[] = {
    {"recording", HUDState::recording, ""},
    {"processing", HUDState::processing, "Transcribing"},
    {"notice", HUDState::notice, "Saved to the clipboard. Press ⌘V to paste."},
    {"error", HUDState::error, "Didn't catch that."},
    {"long", HUDState::error,
     "Transcription incomplete. Partial text copied to the clipboard; press ⌘V to paste."},
    {"german", HUDState::error,
     "Die Transkription ist unvollständig. Der vorhandene Teil des Textes wurde in die Zwischenablage "
     "kopiert; einfügen mit ⌘V."},
    {"hebrew", HUDState::notice, "נשמר בלוח. לחצו על Ctrl+V כדי להדביק."},
    {"arabic", HUDState::error,
     "النص غير مكتمل. نُسخ الجزء المتوفر إلى الحافظة؛ اضغط Ctrl+V للصقه في التطبيق الذي تعمل فيه الآن."},
    {"alone", HUDState::error, ""},
};

class HUDPicturesTest : public ::testing::Test {
protected:
    HUDPicturesTest()
    {
        view.setAttribute(Qt::WA_TranslucentBackground);
        view.resize(600 + 2 * HUDView::shadowMargin, 64 + 2 * HUDView::shadowMargin);
        std::vector<double> bars;
        for (int i = 0; i < 28; ++i)
            bars.push_back(std::max(0.06, std::abs(std::sin(i * 0.55) * std::cos(i * 0.21))));
        model.setBars(bars);
        model.setElapsed(QStringLiteral("0:12"));
    }
    void show(const Face& face)
    {
        model.setState(face.state);
        model.setStatusText(QString::fromUtf8(face.text));
    }
    void paint(const QColor& window)
    {
        QPalette palette(window);
        palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
        view.setPalette(palette);
    }
    /// The view as it is now, above something like a desktop with a window on it.
    [[nodiscard]] QImage picture()
    {
        const QImage drawn = view.grab().toImage();
        QImage desk(drawn.size(), QImage::Format_RGB32);
        desk.setDevicePixelRatio(drawn.devicePixelRatio());
        QLinearGradient ground(0, 0, view.width(), view.height());
        const bool isDark = view.palette().color(QPalette::Window).lightness() < 128;
        ground.setColorAt(0, isDark ? QColor(40, 52, 74) : QColor(170, 196, 220));
        ground.setColorAt(1, isDark ? QColor(88, 60, 92) : QColor(232, 222, 206));
        QPainter painter(&desk);
        painter.fillRect(view.rect(), ground);
        painter.fillRect(0, view.height() / 2, view.width() / 2, view.height(),
                         isDark ? QColor(24, 24, 26) : QColor(255, 255, 255));
        painter.drawImage(0, 0, drawn);
        return desk;
    }
    void keep(const QString& name, const std::vector<QImage>& pictures)
    {
        const qreal scale = pictures.front().devicePixelRatio();
        QImage sheet(pictures.front().width(), pictures.front().height() * int(pictures.size()),
                     QImage::Format_RGB32);
        QPainter painter(&sheet);
        int y = 0;
        for (QImage picture : pictures) {
            picture.setDevicePixelRatio(1);
            painter.drawImage(0, y, picture);
            y += picture.height();
        }
        EXPECT_TRUE(
            sheet.save(QStringLiteral(SCREENSHOTS "/hud_%1_%2x.png").arg(name, QString::number(scale))));
    }

    HUDModel model;
    HUDView view{model};
};

const std::pair<QString, QColor> looks[] = {{QStringLiteral("light"), QColor(Qt::white)},
                                            {QStringLiteral("dark"), QColor(40, 40, 44)}};

TEST_F(HUDPicturesTest, EveryFaceIsKeptAsAPicture)
{
    for (const auto& [look, window] : looks) {
        paint(window);
        std::vector<QImage> pictures;
        for (const Face& face : faces) {
            show(face);
            pictures.push_back(picture());
        }
        keep(QStringLiteral("faces_") + look, pictures);
    }
}

TEST_F(HUDPicturesTest, EveryFaceIsKeptAsItIsWithoutACompositor)
{
    view.setBackdrop(HUDBackdrop::opaque);
    for (const auto& [look, window] : looks) {
        paint(window);
        std::vector<QImage> pictures;
        for (const Face& face : faces) {
            show(face);
            QImage desk = picture();
            QPainter painter(&desk);
            painter.setClipRegion(QRegion(view.rect()) - view.pillRegion());
            painter.fillRect(view.rect(), QColor(120, 140, 130));
            painter.end();
            pictures.push_back(desk);
        }
        keep(QStringLiteral("opaque_") + look, pictures);
    }
}

TEST_F(HUDPicturesTest, AChangeOfStateIsKeptAsAPicture)
{
    paint(Qt::white);
    show(faces[0]);
    view.show();
    testing::runFor(50ms);
    std::vector<QImage> pictures{picture()};
    show(faces[1]);
    for (int i = 0; i < 6; ++i) {
        pictures.push_back(picture());
        testing::runFor(25ms);
    }
    show(faces[4]);
    for (int i = 0; i < 6; ++i) {
        pictures.push_back(picture());
        testing::runFor(25ms);
    }
    keep(QStringLiteral("change"), pictures);
}

} // namespace
} // namespace corvandi
