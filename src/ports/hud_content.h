#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QRegion;
class QWidget;

namespace corvandi {

class HUDModel;

/// What lies behind the HUD: a desktop that shows through, or nothing that could.
enum class HUDBackdrop { translucent, opaque };

/// What a HUD panel shows: a capsule in the middle of a widget, which draws its model by itself. Whoever
/// places the widget keeps a margin for the shadow on every side of what it needs.
///
/// Thread: main thread only.
class HUDContent {
public:
    /// Room for the shadow on every side, in points.
    static constexpr int shadowMargin = 24;

    virtual ~HUDContent() = default;

    [[nodiscard]] virtual QWidget& widget() = 0;
    /// Against an opaque backdrop the widget is the capsule's colour all over and casts no shadow: it has
    /// to be cut out along `pillRegion`.
    virtual void setBackdrop(HUDBackdrop backdrop) = 0;
    /// How wide the capsule may become for a long message, in points; as wide as the widget by default.
    virtual void setWidestPill(qreal width) = 0;
    /// The width that the capsule needs now and until the change under way is over, in points.
    [[nodiscard]] virtual qreal neededWidth() const = 0;
    /// The capsule in the widget's coordinates, as it is now.
    [[nodiscard]] virtual QRegion pillRegion() const = 0;
    /// `changed` runs whenever the capsule has another size, or needs another width than before.
    virtual void whenPillChanges(std::function<void()> changed) = 0;
};

/// Makes the content for a model, which outlives it.
using HUDContentFactory = std::function<std::unique_ptr<HUDContent>(HUDModel&)>;

} // namespace corvandi
