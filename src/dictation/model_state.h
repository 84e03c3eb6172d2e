#pragma once

#include <QString>

#include <variant>

namespace corvandi {

/// Readiness of the speech model.
namespace model_state {
/// The last preparation failed; `message` is its error's description.
struct Failed {
    QString message;
    friend bool operator==(const Failed&, const Failed&) = default;
};
/// Nothing has been attempted yet.
struct Pending {
    friend bool operator==(const Pending&, const Pending&) = default;
};
/// A preparation is running.
struct Preparing {
    friend bool operator==(const Preparing&, const Preparing&) = default;
};
/// The model is installed, or the transcriber has started at least once.
struct Ready {
    friend bool operator==(const Ready&, const Ready&) = default;
};
} // namespace model_state

using ModelState =
    std::variant<model_state::Failed, model_state::Pending, model_state::Preparing, model_state::Ready>;

} // namespace corvandi
