#pragma once

#include <QString>

#include <array>
#include <optional>

namespace corvandi {

/// How dictated text gets into the application: by synthetic keystrokes or through the clipboard.
enum class InsertionMethod { type, paste };

/// Every method, in the order in which they are offered.
inline constexpr std::array allInsertionMethods{InsertionMethod::type, InsertionMethod::paste};

/// The text that stands for the method wherever it is stored: "type" or "paste".
[[nodiscard]] QString rawValue(InsertionMethod method);
/// The method with exactly this raw value (letter case counts); nothing for any other text.
[[nodiscard]] std::optional<InsertionMethod> insertionMethod(const QString& rawValue);

} // namespace corvandi
