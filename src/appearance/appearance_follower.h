#pragma once

#include "appearance/appearance.h"

namespace corvandi {

/// Gives the application the colours that the desktop wants, now and after every change. While the theme
/// of the desktop has them itself, the application's palette is left to the theme. The widgets hear of it
/// from the event loop.
///
/// Thread: main thread only, after the application object of the toolkit. The appearance outlives it.
class AppearanceFollower {
public:
    explicit AppearanceFollower(Appearance& appearance);

private:
    void follow();

    Appearance& appearance_;
    std::unique_ptr<Registration> registration_;
};

} // namespace corvandi
