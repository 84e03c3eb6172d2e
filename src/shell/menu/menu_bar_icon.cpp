#include "shell/menu/menu_bar_icon.h"

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

constexpr double heightInPoints = 18;

QSizeF fittedToTheBar(const QSizeF& size)
{
    constexpr double smallestHeight = 1;
    return {heightInPoints * size.width() / std::max(size.height(), smallestHeight), heightInPoints};
}

} // namespace

MenuBarIcon::MenuBarIcon(Resource resource, SystemSymbol symbol)
    : resource_(std::move(resource))
    , symbol_(std::move(symbol))
{
}

const MenuBarImage& MenuBarIcon::image()
{
    if (!image_)
        image_ = resolve(resource_ ? resource_() : std::nullopt, symbol_);
    return *image_;
}

MenuBarImage MenuBarIcon::resolve(std::optional<MenuBarImage> resource, const SystemSymbol& symbol)
{
    if (resource) {
        resource->size = fittedToTheBar(resource->size);
        resource->isTemplate = true;
        return *std::move(resource);
    }
    std::optional<MenuBarImage> microphone;
    if (symbol)
        microphone = symbol(QStringLiteral("mic.fill"));
    return std::move(microphone).value_or(MenuBarImage());
}

} // namespace corvandi
