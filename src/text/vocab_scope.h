#pragma once

#include <QHash>
#include <QString>

#include <cstddef>
#include <functional>
#include <variant>

namespace corvandi {

/// Which list of the vocabulary is meant: the one for every application, or that of one application.
/// Lives in memory only; no file holds it.
namespace vocab_scope {
struct Global {
    friend bool operator==(const Global&, const Global&) = default;
};
struct App {
    /// Compared exactly, letter case included.
    QString bundleID;
    friend bool operator==(const App&, const App&) = default;
};
} // namespace vocab_scope

using VocabScope = std::variant<vocab_scope::Global, vocab_scope::App>;

} // namespace corvandi

template<>
struct std::hash<corvandi::vocab_scope::Global> {
    [[nodiscard]] std::size_t operator()(const corvandi::vocab_scope::Global&) const noexcept { return 0; }
};
template<>
struct std::hash<corvandi::vocab_scope::App> {
    [[nodiscard]] std::size_t operator()(const corvandi::vocab_scope::App& app) const noexcept
    {
        return qHashMulti(0, 1, app.bundleID);
    }
};
