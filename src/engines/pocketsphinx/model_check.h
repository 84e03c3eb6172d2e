#pragma once

#include <QByteArray>

#include <cstddef>

namespace corvandi {

// What the recognition library takes on trust when it reads a model, and would crash on, or quietly
// understand nothing, if it were not so. Each takes the contents of one file.

/// Means, variances, transition matrices: whether the checksum in the file is that of its numbers.
[[nodiscard]] bool isIntactParameterFile(const QByteArray& data);

/// The model definition: whether all of its tables are there and refer to nothing outside of them.
[[nodiscard]] bool isIntactDefinition(const QByteArray& data);

/// The mixture weights: whether they are all there for the number of states that `definition`, which
/// must be intact, has.
[[nodiscard]] bool areIntactWeights(const QByteArray& data, const QByteArray& definition);

/// The language model: whether it has its table of words, which is the last thing in it.
[[nodiscard]] bool isIntactLanguageModel(const QByteArray& data);

/// The dictionary: whether it is text, is complete to the last line, and has the words of a language.
[[nodiscard]] bool isIntactDictionary(const QByteArray& data);

} // namespace corvandi
