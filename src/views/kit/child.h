#pragma once

#include <QWidget>

#include <memory>
#include <utility>

namespace corvandi::kit {

/// Makes a widget, or the layout of a widget, that belongs to `parent`. The parent is handed over as the
/// last argument.
template<class T, class... Arguments>
T& makeChild(QWidget& parent, Arguments&&... arguments)
{
    return *std::make_unique<T>(std::forward<Arguments>(arguments)..., &parent).release();
}

/// Makes the layout of `parent`, with these margins and this spacing.
template<class T>
T& makeLayout(QWidget& parent, const QMargins& margins = {}, int spacing = 0)
{
    T& layout = makeChild<T>(parent);
    layout.setContentsMargins(margins);
    layout.setSpacing(spacing);
    return layout;
}

/// Makes a layout to be put into another one, which owns it then.
template<class T>
T& makeInnerLayout(int spacing = 0)
{
    auto layout = std::make_unique<T>();
    layout->setSpacing(spacing);
    return *layout.release();
}

} // namespace corvandi::kit
