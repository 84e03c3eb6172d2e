#include "views/menu/menu_bar_pictures.h"

#include "views/symbols/symbol.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace corvandi {
namespace {

/// The symbols' drawings are square; their own size does not matter, they are drawn at any.
constexpr QSizeF drawingSize(24, 24);

MenuBarImage imageOf(Symbol symbol)
{
    MenuBarImage image;
    image.size = drawingSize;
    image.paint = [symbol](QPainter& painter, const QRectF& area, const QColor& color) {
        const qreal scale = painter.device()->devicePixelRatioF();
        painter.drawImage(area, drawSymbol(symbol, area.size().toSize(), color, scale));
    };
    return image;
}

} // namespace

std::optional<MenuBarImage> programPicture()
{
    try {
        // Draws once, to find out whether it is there.
        static_cast<void>(drawSymbol(Symbol::corvandi, QSize(1, 1), Qt::black, 1));
        return imageOf(Symbol::corvandi);
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

std::optional<MenuBarImage> symbolPicture(const QString& name)
{
    // The names of symbols have dots, those of files don't.
    const QString fileName = QString(name).replace(QLatin1Char('.'), QLatin1Char('_'));
    const auto* symbol = std::find_if(std::begin(allSymbols), std::end(allSymbols),
                                      [&](Symbol candidate) { return symbolName(candidate) == fileName; });
    if (symbol == std::end(allSymbols))
        return std::nullopt;
    return imageOf(*symbol);
}

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
    /// Counts device pixels in every version of Qt. What `scaledPixmap` is given does so only before 6.8, and
    /// points since: left as it is, it calls this one with pixels.
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
