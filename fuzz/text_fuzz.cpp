// The text utilities against their descriptions.
//
// Input   u8 group (modulo 4: 0 codes, 1 values, 2 walks, 3 geometry); for values i64 number, for geometry see
//         text_checks.h; then the text, for values and walks up to its first zero byte.
// Limits  Texts of more than 1024 bytes are cut: values and walks are tried from each position.
// Holds   Results and positions are those of a second, plainer reading. What was coded decodes to itself. Outputs stay
//         within the room that their descriptions state, and readers within the text.

#include <algorithm>
#include <cstdint>
#include <string>

#include "input.h"
#include "target.h"
#include "text_checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 1024;
  ei4::fuzz::Input input(data, size);
  const int group = input.u8() % 4;
  if (group == 3) {
    ei4::fuzz::checkGeometry(input);
    return 0;
  }
  const std::int64_t number = group == 1 ? input.i64() : 0;
  const std::string bytes = input.text().substr(0, kMostBytes);
  const std::string text = bytes.substr(0, bytes.find('\0'));
  switch (group) {
    case 0:
      ei4::fuzz::checkCodes(bytes);
      break;
    case 1:
      ei4::fuzz::checkValues(number, text);
      break;
    default:
      ei4::fuzz::checkWalks(text);
  }
  return 0;
}
