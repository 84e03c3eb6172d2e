#include "menu_view/template_icon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <memory>
#include <utility>

namespace corvandi {
namespace {

/// Side lengths of the pictures that go to trays: those of the usual panels, single and double.
constexpr int offeredSides[] = {16, 22, 24, 32, 48, 64, 96};

const QColor glyphColor(Qt::white);
const QColor edgeColor(0, 0, 0, 150);

/// The edge's width in parts of the icon's side, and its least width in pixels.
constexpr double edgeRatio = 1.0 / 24;
constexpr double thinnestEdge = 0.75;

/// The largest area with the image's proportions in the middle of `frame`.
QRectF fitted(const QSizeF& image, const QRectF& frame)
{
    if (image.isEmpty())
        return frame;
    QRectF area(QPointF(), image.scaled(frame.size(), Qt::KeepAspectRatio));
    area.moveCenter(frame.center());
    return area;
}

void paintWithEdge(const MenuBarImage& image, QPainter& painter, const QRectF& frame)
{
    const double edge = std::max(thinnestEdge, std::min(frame.width(), frame.height()) * edgeRatio);
    const QRectF area = fitted(image.size, frame.adjusted(edge, edge, -edge, -edge));
    constexpr double diagonal = 0.7071;
    const QPointF directions[] = {{1, 0},  {diagonal, diagonal},   {0, 1},  {-diagonal, diagonal},
                                  {-1, 0}, {-diagonal, -diagonal}, {0, -1}, {diagonal, -diagonal}};
    for (const QPointF& direction : directions)
        image.paint(painter, area.translated(direction * edge), edgeColor);
    image.paint(painter, area, glyphColor);
}

class TemplateIconEngine : public QIconEngine {
public:
    TemplateIconEngine(MenuBarImage image, QString name)
        : image_(std::move(image))
        , name_(std::move(name))
    {
    }

    void paint(QPainter* painter, const QRect& frame, QIcon::Mode, QIcon::State) override
    {
        if (!image_.paint)
            return;
        painter->setRenderHint(QPainter::Antialiasing);
        if (image_.isTemplate)
            paintWithEdge(image_, *painter, frame);
        else
            image_.paint(*painter, fitted(image_.size, frame), glyphColor);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, picture.rect(), mode, state);
        return picture;
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : offeredSides)
            sizes.append({side, side});
        return sizes;
    }
    QString iconName() override { return name_; }
    [[nodiscard]] QIconEngine* clone() const override
    {
        return std::make_unique<TemplateIconEngine>(image_, name_).release();
    }

private:
    MenuBarImage image_;
    QString name_;
};

} // namespace

QIcon templateIcon(const MenuBarImage& image, const QString& symbolicName)
{
    const bool isInstalled = !symbolicName.isEmpty() && QIcon::hasThemeIcon(symbolicName);
    auto engine = std::make_unique<TemplateIconEngine>(image, isInstalled ? symbolicName : QString());
    return QIcon(engine.release());
}

} // namespace corvandi
