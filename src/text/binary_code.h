// Bytes as printable text, six bits a character (not base64): each group of 3 bytes, a little-endian number,
// becomes the 4 characters 64 + its bits 0..5, 6..11, 12..17 and 18..23. A count character ends the text: '0'
// and the number of bytes (0 to 3) that only fill up the last group.
#pragma once

/// Returns how many characters were written, not counting the zero behind them.
/// Quirk empty-is-one-group: no bytes at all become a group too, of zeros, with the count '3'.
/// in   n bytes; may be null when n is 0.
/// out  4 * groups + 2 bytes, for at least one group; must not overlap the input.
unsigned long EncodeBinary(const void* in, unsigned long n, void* out);

/// Returns how many bytes came out. Only the low six bits of a character count, whatever it is.
/// Quirk odd-count-characters: a single character behind the groups is a count whatever it is, and its low
/// two bits are taken; two or three characters there are ignored, and all bytes of the groups count.
/// in   n characters, not counting a zero behind them; may be null when n is 0.
/// out  3 * groups bytes: all of the last group are written, also those that do not count. Nothing behind
///      them is touched. A count character without any group answers 0.
unsigned long DecodeBinary(const void* in, unsigned long n, void* out);
