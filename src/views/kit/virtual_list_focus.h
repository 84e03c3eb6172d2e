#pragma once

namespace corvandi::kit {

/// Tells Qt how screen readers are to see `VirtualList`, its rows, and `SelectableText`. May be called any
/// number of times.
void makeListsAccessible();

} // namespace corvandi::kit
