// Hexadecimal digits and numbers.
//
// Quirk hex-names-exchanged: ByteToHex reads a digit and HexToByte writes one.
#pragma once

/// The value 0 to 15 of a hexadecimal digit in either case; -1 for any other character.
int ByteToHex(unsigned char digit);

/// The digit, '0' to '9' or 'a' to 'f', for the low four bits.
char HexToByte(int value);

/// The number whose digits stand in the text; 0 for none or for null. Of more than eight, the last eight.
/// Quirk hex-skips-non-digits: other characters are passed over and do not end the number.
int StrToHex(const char* text);
