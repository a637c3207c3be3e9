// The kinds of characters that report texts are made of. Exact sets: no locale, no other control character.
#pragma once

namespace ei4 {

/// Space or tab.
constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// Carriage return or line feed.
constexpr bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

/// What stands between words: a blank or a line end. A form feed or a vertical tab belongs to a word.
constexpr bool isWhiteSpace(char c) { return isBlank(c) || isLineEnd(c); }

}  // namespace ei4
