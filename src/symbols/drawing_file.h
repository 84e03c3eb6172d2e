#pragma once

#include <QByteArray>
#include <QString>

namespace corvandi {

/// The SVG text of a drawing that is built into the program, by its name without suffix. Throws
/// std::logic_error when there is none.
[[nodiscard]] QByteArray drawingFile(const QString& name);

} // namespace corvandi
