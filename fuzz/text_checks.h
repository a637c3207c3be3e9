// What must hold for the text utilities, one function for each group of them. The text has no zero byte.
#pragma once

#include <string>

#include "input.h"

namespace ei4::fuzz {

/// URL, binary and hexadecimal codes. bytes: any.
void checkCodes(const std::string& bytes);

/// The readers and writers of single values, from each position of the text.
void checkValues(std::int64_t number, const std::string& text);

/// The walks over words and lines, from each position of the text.
void checkWalks(const std::string& text);

/// Sizes, lines and ovals. The input gives u8 (bit 0: numbers of 64 bits, else of 32), a rectangle, two points, an
/// orientation.
void checkGeometry(Input& input);

}  // namespace ei4::fuzz
