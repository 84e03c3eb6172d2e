// Any bytes as the history file: they are refused with an error, or are a history that survives another
// round through the file.

#include "expect.h"

#include "base/error.h"
#include "core/data/history.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace {

using namespace corvandi;
using fuzz::expect;

std::optional<std::vector<HistoryEntry>> decoded(const QByteArray& bytes)
{
    try {
        return decodedHistory(bytes);
    } catch (const Error& error) {
        expect(!error.description().isEmpty(), "a refusal has a reason");
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto entries = decoded({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    if (!entries)
        return 0;
    History history(TextFolding(Locale(QStringLiteral("tr-TR"))), *entries);
    const QByteArray encoded = history.encode();
    expect(decoded(encoded) == entries, "what was read is written and read the same");
    for (const HistoryEntry& entry : *entries)
        expect(!history.containing(entry.text).empty(), "a text contains itself");
    return 0;
}
