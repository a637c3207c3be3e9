// Walking a zero-terminated text in place: each function takes a position and answers a later one in the same
// text, which it only reads. Null for null; where null is named as an answer, nothing more follows.
//
// White space is space, tab, carriage return and line feed; blanks are space and tab; a line ends at a
// carriage return or a line feed. A word is what stands between white space.
#pragma once

/// The first character at or behind p that is not white space; perhaps the terminating zero.
char* SkipWhiteSpaces(char* p);

/// The first character at or behind p that is not a blank; perhaps a line end or the terminating zero.
char* SkipWhiteSpacesInLine(char* p);

/// Behind the rest of the word at p, the start of the next one; null at the end of the text.
/// Quirk next-word-crosses-lines: it may stand on a later line.
char* NextWord(char* p);

/// Behind the rest of the word at p, the start of the next one on the same line; null when there is none.
char* NextWordInLine(char* p);

/// The first character behind the line at p that is not white space, so empty lines and the blanks in front
/// of the next one are passed over; null at the end of the text.
char* NextLine(char* p);

/// The first line at or behind p that has something on it and does not begin with '#', from its first
/// character that is not white space; null at the end of the text. For a p at the start of a line.
char* SkipCommentLines(char* p);
