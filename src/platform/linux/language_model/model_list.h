#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace corvandi {

/// The names in a server's list of models, in its order; nothing when it is no such list.
[[nodiscard]] std::optional<std::vector<QString>> readModelList(const QByteArray& json);

/// The model that rewrites: the one that is called `wanted` (a tag ":latest" may be left out), or when
/// that is empty the first one that is not for other things than conversation. Nothing when there is
/// none.
[[nodiscard]] std::optional<QString> chooseModel(const std::vector<QString>& models, const QString& wanted);

} // namespace corvandi
