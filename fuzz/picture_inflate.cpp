// Deflated data sets, against the library's inflation of a whole stream at once.
#include <zlib.h>

#include <vector>

#include "check.h"
#include "ei4make/inflate.h"
#include "picture_checks.h"

namespace ei4::fuzz {

namespace {

using Bytes = std::span<const std::uint8_t>;

bool fits(Bytes stream, std::size_t most) {
  try {
    tools::inflated(stream, most);
    return true;
  } catch (const tools::PictureError&) {
    return false;
  }
}

/// The first bytes of what a stream gives, at most `most`. True when these are all.
bool atOnce(Bytes stream, std::size_t most, std::vector<std::uint8_t>& bytes) {
  bytes.resize(most + 1);
  z_stream z{};
  require(inflateInit2(&z, -15) == Z_OK, "the library is ready");
  z.next_in = const_cast<std::uint8_t*>(stream.data());
  z.avail_in = static_cast<uInt>(stream.size());
  z.next_out = bytes.data();
  z.avail_out = static_cast<uInt>(bytes.size());
  const bool isWhole = inflate(&z, Z_FINISH) == Z_STREAM_END;
  bytes.resize(z.total_out);
  inflateEnd(&z);
  return isWhole && bytes.size() <= most;
}

}  // namespace

void tryInflate(Input input) {
  const std::size_t most = std::size_t{input.u16()} * 16;
  const Bytes stream = input.rest();
  std::vector<std::uint8_t> wanted;
  const bool isWhole = atOnce(stream, most, wanted);
  try {
    const std::vector<unsigned char> bytes = tools::inflated(stream, most);
    require(isWhole && bytes == wanted, "the bytes are those that the stream gives at once");
    require(bytes.empty() || !fits(stream, bytes.size() - 1), "no byte more than the limit comes out");
    require(fits(stream, bytes.size()), "the limit itself is allowed");
  } catch (const tools::PictureError&) {
    require(!isWhole, "a whole stream within the limit is taken");
  }
}

}  // namespace ei4::fuzz
