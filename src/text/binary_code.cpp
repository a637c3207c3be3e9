#include "text/binary_code.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace {

constexpr unsigned long kBytes = 3;       // of a group
constexpr unsigned long kCharacters = 4;  // of a group

void encodeGroup(const std::uint8_t* bytes, char* out) {
  const std::uint32_t bits = bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16;
  for (unsigned i = 0; i < kCharacters; ++i) out[i] = static_cast<char>(64 + (bits >> 6 * i & 63));
}

void decodeGroup(const std::uint8_t* characters, std::uint8_t* out) {
  std::uint32_t bits = 0;
  for (unsigned i = 0; i < kCharacters; ++i) bits |= (characters[i] & 63u) << 6 * i;
  for (unsigned i = 0; i < kBytes; ++i) out[i] = static_cast<std::uint8_t>(bits >> 8 * i);
}

}  // namespace

unsigned long EncodeBinary(const void* in, unsigned long n, void* out) {
  const auto* bytes = static_cast<const std::uint8_t*>(in);
  char* const begin = static_cast<char*>(out);
  char* end = begin;
  for (; n > kBytes; n -= kBytes, bytes += kBytes, end += kCharacters) encodeGroup(bytes, end);

  // Quirk empty-is-one-group: without bytes this one is written all the same.
  std::array<std::uint8_t, kBytes> last{};
  if (n != 0) std::memcpy(last.data(), bytes, n);
  encodeGroup(last.data(), end);
  end += kCharacters;
  *end++ = static_cast<char>('0' + (kBytes - n));
  *end = '\0';
  return static_cast<unsigned long>(end - begin);
}

unsigned long DecodeBinary(const void* in, unsigned long n, void* out) {
  const auto* characters = static_cast<const std::uint8_t*>(in);
  auto* bytes = static_cast<std::uint8_t*>(out);
  const unsigned long groups = n / kCharacters;
  for (unsigned long i = 0; i < groups; ++i) decodeGroup(characters + i * kCharacters, bytes + i * kBytes);
  if (n % kCharacters != 1 || groups == 0) return groups * kBytes;  // Quirk odd-count-characters
  return groups * kBytes - (characters[n - 1] & 3u);
}
