#pragma once

class QWidget;

namespace corvandi {

/// Has the X server keep the picture in the middle of the window when that is resized, until the window
/// draws itself anew: without this, a window that grows or shrinks on both sides shows its old picture in
/// the wrong place for one frame. Does nothing on another platform than X11.
///
/// Makes the native window if there is none yet. Thread: main thread only.
void keepPictureInTheMiddle(QWidget& window);

} // namespace corvandi
