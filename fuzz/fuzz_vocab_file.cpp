// Any bytes as the vocabulary file: they are refused, or are a book that survives another round through
// the file, in the current form then.

#include "expect.h"

#include "core/text/vocab_book.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace corvandi;
    using fuzz::expect;

    const auto first =
        VocabBook::decoded({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    if (!first)
        return 0;
    expect(!first->migrated || first->book.apps.empty(), "the earlier form has global rules only");
    const auto second = VocabBook::decoded(first->book.encoded());
    expect(second.has_value(), "what was read is written in a readable form");
    expect(!second->migrated, "what is written has the current form");
    expect(second->book == first->book, "what was read is written and read the same");
    return 0;
}
