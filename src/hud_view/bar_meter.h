#pragma once

#include "hud_view/spring.h"

#include <vector>

namespace corvandi {

/// The bars of the level meter on their way from one height to the next. Bars are told apart by their
/// position.
class BarMeter {
public:
    /// How long a bar takes to a new height, quick at first and slow at the end.
    static constexpr std::chrono::milliseconds duration{90};

    /// Shows these heights, at once.
    void jumpTo(std::vector<double> heights);
    /// Goes from the heights shown by `now` to these.
    void moveTo(const std::vector<double>& heights, AnimationTime now);

    [[nodiscard]] std::vector<double> at(AnimationTime now) const;
    [[nodiscard]] bool isAtRest(AnimationTime now) const { return now - start_ >= duration; }

private:
    std::vector<double> from_;
    std::vector<double> to_;
    AnimationTime start_{-duration};
};

} // namespace corvandi
