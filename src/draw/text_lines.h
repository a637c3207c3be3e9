// Lines of a text, as MagickCore tells them apart.
#pragma once

#include <string_view>
#include <vector>

namespace ei4 {

/// Splits a text where MagickCore would. A line feed ends a line, and so does a carriage return, which takes
/// the byte behind it along, whatever that is. There are never more lines than line feeds and one, so text
/// behind a lone carriage return may be lost. Views into `text`.
std::vector<std::string_view> textLines(std::string_view text);

/// The first bytes of a text, up to `limit`, without a UTF-8 character cut in two.
std::string_view boundedText(std::string_view text, std::size_t limit);

}  // namespace ei4
