#pragma once

/// Lengths of the windows, in points.
namespace corvandi::kit::metrics {

/// Between the edge of a pane and its content.
inline constexpr int paneMargin = 24;
/// Wider columns of text and controls are hard to read across.
inline constexpr int widestColumn = 640;
inline constexpr int sectionSpacing = 18;
/// Between a section's header, its card and its footer.
inline constexpr int headerSpacing = 8;

inline constexpr int cardRadius = 10;
/// Between a card's edge and what it holds.
inline constexpr int rowMargin = 14;
inline constexpr int rowPadding = 8;
inline constexpr int rowHeight = 44;
/// Between a label and its control.
inline constexpr int rowSpacing = 16;
inline constexpr int captionSpacing = 4;

inline constexpr int controlRadius = 6;
inline constexpr int controlHeight = 30;
inline constexpr int controlPadding = 12;
inline constexpr int iconSize = 16;
inline constexpr int focusRingWidth = 2;

} // namespace corvandi::kit::metrics
