// Texts as single words: what is no letter, digit or dot becomes a "%" with two hexadecimal digits, a space
// "+". Both functions end the output with a zero; neither takes null.
#pragma once

/// out  room for three bytes for each byte of the input, and one more; must not overlap it.
void EncodeURL(const char* in, char* out);

/// Decodes leniently: a "%" without two hexadecimal digits behind it stays, with the characters looked at.
/// Quirk url-line-ends: an encoded line feed or carriage return, or an encoded pair of both in either order,
/// becomes a carriage return and a line feed. Those that stand in the input unencoded are copied.
/// out  room for the input and its zero, as the output is never longer; it may be the input's own buffer.
///      "%00" becomes a zero byte, which ends the text for its reader, but not the decoding.
void DecodeURL(const char* in, char* out);
