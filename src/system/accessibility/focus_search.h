#pragma once

#include "system/accessibility/accessibility_bus.h"
#include "system/accessibility/accessible_object.h"

namespace corvandi {

/// Which windows of an application are searched.
enum class SearchedWindows { all, active };

/// Looks through what the applications below `roots` show, level by level, for the element that has the
/// focus: the innermost one, if it lies inside others that say so too, and a document to be read only if
/// there is no other. Invisible branches and containers with very many children are left out. Nothing if
/// there is none, or the deadline came first.
[[nodiscard]] std::optional<ObjectRef> findFocused(BusReader& reader, const QList<ObjectRef>& roots,
                                                   SearchedWindows windows, const QDeadlineTimer& deadline);

} // namespace corvandi
