#include "engines/pocketsphinx/model_check.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

namespace corvandi {
namespace {

constexpr qsizetype wordSize = sizeof(uint32_t);
/// Longer than any that the language model has.
constexpr qsizetype longestWord = 200;

/// Reads numbers in the machine's byte order, one after the other; never beyond the end.
class Reader {
public:
    Reader(const QByteArray& data, qsizetype offset)
        : data_(data)
        , offset_(offset)
    {
    }

    [[nodiscard]] bool has(qsizetype bytes) const { return bytes >= 0 && bytes <= data_.size() - offset_; }
    void skip(qsizetype bytes) { offset_ = has(bytes) ? offset_ + bytes : data_.size(); }
    [[nodiscard]] qsizetype offset() const { return offset_; }

    /// A table of `count` numbers; nothing when the file ends before.
    template<class Number>
    [[nodiscard]] std::optional<std::vector<Number>> table(qsizetype count)
    {
        const auto bytes = count * static_cast<qsizetype>(sizeof(Number));
        if (count < 0 || count > data_.size() || !has(bytes))
            return std::nullopt;
        std::vector<Number> numbers(static_cast<size_t>(count));
        std::memcpy(numbers.data(), data_.constData() + offset_, static_cast<size_t>(bytes));
        offset_ += bytes;
        return numbers;
    }

private:
    const QByteArray& data_;
    qsizetype offset_;
};

bool isWithin(int64_t value, int64_t end)
{
    return value >= 0 && value < end;
}

/// The counts at the start of a model definition, in the file's order.
struct Counts {
    int32_t basePhones;
    int32_t phones;
    int32_t states;
    int32_t baseSenones;
    int32_t senones;
    int32_t transitions;
    int32_t sequences;
    int32_t contexts;
    int32_t treeNodes;
    int32_t silence;

    [[nodiscard]] bool areSensible() const
    {
        return basePhones > 0 && phones >= basePhones && states > 0 && baseSenones > 0 &&
               senones >= baseSenones && transitions > 0 && sequences > 0 && contexts > 0 && treeNodes > 0 &&
               isWithin(silence, basePhones);
    }
};

struct TreeNode {
    int16_t context;
    int16_t children;
    int32_t target;
};

struct Phone {
    int32_t sequence;
    int32_t transition;
    int32_t attributes;
};

/// Where the numbers of a model definition begin; nothing when it is no such file.
std::optional<Counts> readCounts(Reader& reader, const QByteArray& data)
{
    reader.skip(2 * wordSize);
    const auto headerLength = reader.table<int32_t>(1);
    if (!data.startsWith("BMDF") || !headerLength || !reader.has(headerLength->front()))
        return std::nullopt;
    reader.skip(headerLength->front());
    const auto counts = reader.table<Counts>(1);
    return counts && counts->front().areSensible() ? counts->front() : std::optional<Counts>();
}

/// Names end with a zero each, and the last one is padded to a whole word.
bool skipNames(Reader& reader, const QByteArray& data, int32_t count)
{
    const qsizetype begin = reader.offset();
    qsizetype at = begin;
    for (int32_t i = 0; i < count; ++i) {
        const qsizetype end = data.indexOf('\0', at);
        if (end < 0)
            return false;
        at = end + 1;
    }
    const qsizetype length = at - begin;
    reader.skip((length + wordSize - 1) / wordSize * wordSize);
    return true;
}

/// A node has its children, or else a phone.
bool isSound(const TreeNode& node, const Counts& counts)
{
    if (node.children < 0)
        return false;
    if (node.children == 0)
        return node.target < counts.phones;
    return node.target >= 0 && int64_t{node.target} + node.children <= counts.treeNodes;
}

bool isSound(const Phone& phone, const Counts& counts)
{
    return isWithin(phone.sequence, counts.sequences) && isWithin(phone.transition, counts.transitions);
}

template<class Entry>
bool isSoundTable(Reader& reader, int32_t count, const Counts& counts)
{
    const auto entries = reader.table<Entry>(count);
    return entries && std::all_of(entries->begin(), entries->end(),
                                  [&](const Entry& entry) { return isSound(entry, counts); });
}

bool isSoundSequenceTable(Reader& reader, const Counts& counts)
{
    const auto length = reader.table<int32_t>(1);
    if (!length || length->front() != int64_t{counts.sequences} * counts.states)
        return false;
    const auto senones = reader.table<int16_t>(length->front());
    return senones && std::all_of(senones->begin(), senones->end(),
                                  [&](int16_t senone) { return isWithin(senone, counts.senones); });
}

} // namespace

bool isIntactParameterFile(const QByteArray& data)
{
    constexpr uint32_t byteOrderMark = 0x11223344;
    constexpr int rotation = 20;
    const QByteArray headerEnd("endhdr\n");
    const qsizetype header = data.indexOf(headerEnd);
    if (!data.startsWith("s3\n") || header < 0)
        return false;
    Reader reader(data, header + headerEnd.size());
    const qsizetype length = data.size() - reader.offset();
    if (length % wordSize != 0 || length < 2 * wordSize)
        return false;
    const auto words = reader.table<uint32_t>(length / wordSize);
    uint32_t sum = 0;
    for (size_t i = 1; i + 1 < words->size(); ++i)
        sum = std::rotl(sum, rotation) + (*words)[i];
    return words->front() == byteOrderMark && words->back() == sum;
}

bool isIntactDefinition(const QByteArray& data)
{
    Reader reader(data, 0);
    const auto counts = readCounts(reader, data);
    return counts && skipNames(reader, data, counts->basePhones) &&
           isSoundTable<TreeNode>(reader, counts->treeNodes, *counts) &&
           isSoundTable<Phone>(reader, counts->phones, *counts) && isSoundSequenceTable(reader, *counts);
}

bool areIntactWeights(const QByteArray& data, const QByteArray& definition)
{
    // Three features of 128 densities each, one byte for each state.
    constexpr qsizetype weightsPerSenone = 3 * 128;
    Reader reader(definition, 0);
    const auto counts = readCounts(reader, definition);
    return counts && data.contains("BEGIN FILE FORMAT DESCRIPTION") &&
           data.size() > weightsPerSenone * counts->senones;
}

bool isIntactLanguageModel(const QByteArray& data)
{
    // A title, a byte for the order of the model, the number of words. At the end the table's length and
    // the words, each with a zero after it.
    const QByteArray title("Trie Language Model");
    Reader reader(data, title.size() + 1);
    const auto words = reader.table<int32_t>(1);
    if (!data.startsWith(title) || !words || words->front() <= 0 || !data.endsWith('\0'))
        return false;
    qsizetype zero = data.size() - 1;
    for (int32_t i = 1; i < words->front() && zero > 0; ++i)
        zero = data.lastIndexOf('\0', zero - 1);
    // The first word's own zero has been reached; its beginning is where the length says it is.
    for (qsizetype begin = zero; begin > reader.offset() + wordSize; --begin) {
        Reader length(data, begin - wordSize);
        if (length.table<int32_t>(1)->front() == data.size() - begin)
            return true;
        if (zero - begin > longestWord)
            return false;
    }
    return false;
}

bool isIntactDictionary(const QByteArray& data)
{
    // The English one has 134,000.
    constexpr qsizetype fewestWords = 100000;
    return data.count('\n') >= fewestWords && data.endsWith('\n') && !data.contains('\0');
}

} // namespace corvandi
