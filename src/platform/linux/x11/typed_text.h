#pragma once

#include <string>
#include <string_view>

namespace corvandi {

/// The characters that a person would type for this UTF-16 text, in order, as code points.
///
/// A line break of any kind (LF, CR, CR LF) is U+000A, the Return key; U+0009 is the Tab key. What no
/// keyboard types is left out, so that the rest of the text arrives: other control characters (some
/// keys that produce them, such as Escape, would do harm), lone surrogates and noncharacters.
[[nodiscard]] std::u32string typedCharacters(std::u16string_view text);

} // namespace corvandi
