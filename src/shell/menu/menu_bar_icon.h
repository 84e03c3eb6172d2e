#pragma once

#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

class QColor;
class QPainter;
class QRectF;

namespace corvandi {

/// A picture that can be drawn at any size.
struct MenuBarImage {
    /// Fills `area` with the picture; one that is a template is drawn in `color` alone.
    using Paint = std::function<void(QPainter& painter, const QRectF& area, const QColor& color)>;

    /// In points.
    QSizeF size;
    /// A template is drawn in the colour of its surroundings, light or dark.
    bool isTemplate = false;
    /// Not set: nothing is drawn.
    Paint paint;
};

/// The menu bar's icon: the program's own picture, or a microphone when that is missing.
///
/// Thread: main thread only.
class MenuBarIcon {
public:
    /// The program's own picture; nothing when it is missing or can't be read.
    using Resource = std::function<std::optional<MenuBarImage>()>;
    /// The symbol of this name; nothing when there is none.
    using SystemSymbol = std::function<std::optional<MenuBarImage>(const QString& name)>;

    MenuBarIcon(Resource resource, SystemSymbol symbol);

    /// Loaded by the first call.
    [[nodiscard]] const MenuBarImage& image();

    /// `resource` as a template, 18 points high and as wide as its proportions ask for (a height of one
    /// point or less counts as one); without it the microphone symbol as it is; without that an empty
    /// image.
    [[nodiscard]] static MenuBarImage resolve(std::optional<MenuBarImage> resource,
                                              const SystemSymbol& symbol);

private:
    Resource resource_;
    SystemSymbol symbol_;
    std::optional<MenuBarImage> image_;
};

} // namespace corvandi
