// Cutting pieces out of a zero-terminated text. Each costs the length of the piece, not of the text behind
// it, and cuts a piece beyond INT_MAX bytes to that many. White space, blanks, line ends and words are as in
// text/scanner.h.
#pragma once

#include "types/cstring.h"

/// The characters from p up to white space; empty when there is none, or for null.
CString GetWord(const char* p);

/// The characters from p up to the line end, blanks included; empty for null.
CString GetLine(const char* p);

/// The line from p up to its first '#', without white space around it; empty for null.
CString GetPureLine(const char* p);

/// The value of the first comment line "# name: value" of the text: what follows the colon and the blanks
/// behind it, blanks at its end included. Blanks may stand before '#' and name, none before the colon.
/// text  may be null: nothing is found.
/// name  compared byte by byte. Never null.
/// next  out: NextLine of the value, null when nothing was found. May be null.
/// Empty, too, when there is no such line. Costs one walk over the text.
CString GetCommentField(char* text, const char* name, char** next);
