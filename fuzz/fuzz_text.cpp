// Any UTF-16, also broken, through everything that works on texts.

#include "expect.h"

#include "text/valid_text.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

using namespace corvandi;

QString textOf(const std::uint8_t* data, std::size_t size)
{
    QString text(static_cast<qsizetype>(size / sizeof(QChar)), Qt::Uninitialized);
    if (!text.isEmpty())
        std::memcpy(text.data(), data, static_cast<std::size_t>(text.size()) * sizeof(QChar));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = textOf(data, size);
    const QString valid = withValidSurrogates(text);
    fuzz::expect(valid.isValidUtf16(), "the text is valid UTF-16");
    fuzz::expect(valid.size() == text.size(), "one replacement for each lone surrogate");
    return 0;
}
